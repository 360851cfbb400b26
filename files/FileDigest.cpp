#include "files/FileDigest.h"

#include "files/Descriptor.h"
#include "files/FileError.h"

#include <QFile>

#include <array>
#include <cerrno>
#include <memory>
#include <new>
#include <vector>

#include <fcntl.h>
#include <openssl/evp.h>
#include <unistd.h>

namespace quire::FileDigest {

namespace {

constexpr std::size_t pieceBytes = std::size_t(1) << 20;

// Not QCryptographicHash: it takes longer over a library of 400 MB than all the
// rest of a backup, for want of the processor's own instructions.
class Sha256
{
public:
    Sha256()
        : m_context(EVP_MD_CTX_new(), EVP_MD_CTX_free)
    {
        if (!m_context || EVP_DigestInit_ex(m_context.get(), EVP_sha256(), nullptr) != 1) {
            throw std::bad_alloc();
        }
    }

    void add(const char *bytes, std::size_t count) { EVP_DigestUpdate(m_context.get(), bytes, count); }

    QString result()
    {
        std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
        unsigned int length = 0;
        EVP_DigestFinal_ex(m_context.get(), digest.data(), &length);
        return QString::fromLatin1(QByteArray(reinterpret_cast<const char *>(digest.data()), length).toHex());
    }

private:
    std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)> m_context;
};

} // namespace

QString sha256(const QString &path)
{
    const auto fail = [&path] { throw FileError(QStringLiteral("read the file"), path, errno); };
    const Descriptor file(::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC));
    if (file.number() < 0) {
        fail();
    }
    ::posix_fadvise(file.number(), 0, 0, POSIX_FADV_SEQUENTIAL);

    Sha256 digest;
    std::vector<char> piece(pieceBytes);
    for (;;) {
        const ssize_t count = ::read(file.number(), piece.data(), piece.size());
        if (count > 0) {
            digest.add(piece.data(), std::size_t(count));
        } else if (count == 0) {
            return digest.result();
        } else if (errno != EINTR) {
            fail();
        }
    }
}

} // namespace quire::FileDigest
