#include "fuzz/ScratchFolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace quire::fuzz {

namespace {

QString pattern()
{
    const QString memory = QStringLiteral("/dev/shm");
    return (QFileInfo(memory).isWritable() ? memory : QDir::tempPath()) + QStringLiteral("/quire-fuzz-XXXXXX");
}

} // namespace

ScratchFolder::ScratchFolder()
    : m_folder(pattern())
{
}

void ScratchFolder::put(const QString &path, const QByteArray &bytes) const
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
        qFatal("%s: %s", qPrintable(path), qPrintable(file.errorString()));
    }
}

void ScratchFolder::clear() const
{
    const QDir folder(path());
    for (const QFileInfo &entry :
        folder.entryInfoList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot)) {
        if (entry.isDir() && !entry.isSymLink()) {
            QDir(entry.filePath()).removeRecursively();
        } else {
            QFile::remove(entry.filePath());
        }
    }
}

QByteArray bytesOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace quire::fuzz
