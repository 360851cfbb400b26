// The inputs of a fuzz target that the repository keeps.
//
// Thread: any.

#pragma once

#include "testing/TestFiles.h"

#include <QByteArrayList>
#include <QDir>

namespace quire::testing {

inline QDir corpusOf(const char *target)
{
    return QDir(QStringLiteral(QUIRE_FUZZ_CORPORA "/") + QString::fromLatin1(target));
}

// Cut anywhere, an input is as good a one as whole.
inline QByteArrayList wholeAndCut(const QByteArray &input)
{
    QByteArrayList inputs{input};
    for (qsizetype cut = 0; cut < input.size(); cut += 1 + input.size() / 64) {
        inputs.append(input.first(cut));
    }
    return inputs;
}

} // namespace quire::testing
