// The base of every failure that Quire itself raises. The description is what
// the reader or the log sees, unchanged.

#pragma once

#include <QString>

#include <exception>

namespace quire {

class Failure : public std::exception
{
public:
    ~Failure() override;

    // One readable text, complete in itself.
    virtual QString description() const = 0;

    // The description in UTF-8, for test output and debuggers.
    const char *what() const noexcept override;

private:
    mutable QByteArray m_what;
};

// The description of any exception: that of a Failure, else its what().
// Call inside a catch block's reach: describe(error).
QString describe(const std::exception &error);

} // namespace quire
