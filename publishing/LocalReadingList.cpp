#include "publishing/LocalReadingList.h"

#include "files/DurableFile.h"
#include "reliability/QuireFailureInjector.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <sys/stat.h>
#include <unistd.h>

namespace quire::LocalReadingList {

namespace {

constexpr mode_t modeOfNewFile = 0644;

// A reader who has taken rights from the file, or given some, finds them again.
mode_t modeFor(const QString &path)
{
    struct stat status
    {
    };
    const bool isFile = ::stat(QFile::encodeName(path).constData(), &status) == 0 && S_ISREG(status.st_mode);
    return isFile ? status.st_mode & 0777 : modeOfNewFile;
}

// What programs that were killed while they wrote have left beside `list`, whose
// date is the present. A file of less than a day may be another's that writes now.
void removeLeftovers(const QFileInfo &list)
{
    static const QRegularExpression name(
        QRegularExpression::anchoredPattern(QStringLiteral("\\.{1,2}quire\\.md\\.\\d+\\.tmp(\\..+\\.tmp)?")));
    const QDateTime oldest = list.lastModified().addDays(-1);
    const auto files = list.dir().entryInfoList(
        {QStringLiteral("*.quire.md.*.tmp*")}, QDir::Files | QDir::Hidden | QDir::System | QDir::NoSymLinks);
    for (const QFileInfo &file : files) {
        if (name.match(file.fileName()).hasMatch() && file.lastModified() < oldest) {
            QFile::remove(file.filePath());
        }
    }
}

class StagingFile
{
public:
    explicit StagingFile(QString path)
        : m_path(std::move(path))
    {
    }
    ~StagingFile()
    {
        if (!m_isMoved) {
            ::unlink(QFile::encodeName(m_path).constData());
        }
    }
    StagingFile(const StagingFile &) = delete;
    StagingFile &operator=(const StagingFile &) = delete;

    void moveOver(const QString &target)
    {
        DurableFile::moveOver(m_path, target);
        m_isMoved = true;
    }

private:
    QString m_path;
    bool m_isMoved = false;
};

} // namespace

QString write(const QString &folder, const QByteArray &markdown)
{
    const QDir place(QDir(folder).absolutePath());
    DurableFile::createFolder(place.path());

    QString target = place.filePath(QStringLiteral("quire.md"));
    // Two processes that publish into one folder keep to their own.
    const QString stagingPath
        = place.filePath(QStringLiteral(".quire.md.%1.tmp").arg(QCoreApplication::applicationPid()));
    StagingFile staging(stagingPath);
    DurableFile::write(stagingPath, markdown, modeFor(target));
    QuireFailureInjector::checkpoint(u"publishing-after-staging");
    staging.moveOver(target);
    removeLeftovers(QFileInfo(target));
    return target;
}

} // namespace quire::LocalReadingList
