#include "faults/DiskRecord.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

#include <stdexcept>

namespace quire::testing {

FolderImage readFolder(const QString &folder)
{
    FolderImage image;
    const QDir root(folder);
    QDirIterator files(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        if (!file.open(QIODevice::ReadOnly)) {
            throw std::runtime_error("cannot read " + file.fileName().toStdString());
        }
        image.insert(root.relativeFilePath(file.fileName()), file.readAll());
    }
    return image;
}

void writeFolder(const QString &folder, const FolderImage &image)
{
    for (auto entry = image.cbegin(); entry != image.cend(); ++entry) {
        QFile file(folder + QLatin1Char('/') + entry.key());
        QDir().mkpath(QFileInfo(file).path());
        if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(*entry) != entry->size()) {
            throw std::runtime_error("cannot write " + file.fileName().toStdString());
        }
    }
}

} // namespace quire::testing
