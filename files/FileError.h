// The failure of a file operation: what was tried, on which path, and the
// system's own code, which is what tells a full disk from a missing folder.

#pragma once

#include "records/Failure.h"

#include <QString>

namespace quire {

class FileError : public Failure
{
public:
    // action: completes "Could not …", as in "write the file". path: absolute.
    // code: an errno value.
    FileError(QString action, QString path, int code);

    const QString &path() const { return m_path; }
    int code() const { return m_code; }

    // "Could not write the file “/a/b”: No space left on device"
    QString description() const override;

private:
    QString m_action;
    QString m_path;
    int m_code;
};

// The file has its new content, but a power cut may bring the old one back.
class UnsyncedFileError final : public FileError
{
public:
    using FileError::FileError;
};

} // namespace quire
