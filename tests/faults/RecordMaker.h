// Small JSON records as nobody should find them, and as they should be.
//
// Thread: the test's.

#pragma once

#include "faults/Torture.h"

#include <QByteArray>
#include <QByteArrayList>

#include <algorithm>

namespace quire::testing {

// A record as text, made of parts of which the maker knows whether they are
// right: whether the whole must be understood follows from how it was made.
class RecordMaker
{
public:
    explicit RecordMaker(Torture &torture)
        : m_torture(torture)
    {
    }

    bool mustDecode() const { return m_mustDecode; }

    // One field. good: JSON texts that are right for it. optional: may be left
    // out or null.
    void add(const char *key, const QList<QByteArray> &good, bool optional = false)
    {
        const QList<QByteArray> never{"[]", "{}", "[\"x\"]", "{\"a\": 1}"};
        switch (m_torture.below(40)) {
        case 0:
            m_mustDecode = m_mustDecode && optional;
            return;
        case 1:
            m_mustDecode = m_mustDecode && optional;
            m_fields.append(field(key, "null"));
            return;
        case 2:
            m_mustDecode = false;
            m_fields.append(field(key, never[m_torture.below(int(never.size()))]));
            return;
        default:
            m_fields.append(field(key, good[m_torture.below(int(good.size()))]));
        }
    }

    // A field that is there and wrong.
    void addBad(const char *key, const QList<QByteArray> &bad)
    {
        m_mustDecode = false;
        m_fields.append(field(key, bad[m_torture.below(int(bad.size()))]));
    }

    QByteArray text()
    {
        if (m_torture.below(4) == 0) {
            m_fields.append(field("somethingLater", QByteArray(m_torture.below(200), '[') + "1"));
            m_fields.last().append(QByteArray(m_fields.last().count('['), ']'));
        }
        std::shuffle(m_fields.begin(), m_fields.end(), m_torture.random());
        QByteArray text = "{" + blank() + m_fields.join(blank() + "," + blank()) + blank() + "}";
        switch (m_torture.below(8)) {
        case 0: // torn
            m_mustDecode = false;
            return text.left(m_torture.below(int(text.size())));
        case 1: // the end of an older, longer one
            m_mustDecode = false;
            return text + "x}" + QByteArray(m_torture.below(50), '}');
        case 2: // a block of zeros, as after a power cut
            m_mustDecode = false;
            return QByteArray(text.size(), '\0');
        case 3: // anything
            m_mustDecode = false;
            for (char &byte : text) {
                byte = char(m_torture.below(256));
            }
            text[0] = '\x01';
            return text;
        case 4: // far too long
            if (m_torture.below(20) == 0) {
                m_mustDecode = false;
                return text + QByteArray(2 << 20, ' ');
            }
            return text;
        default:
            return text;
        }
    }

private:
    QByteArray blank() { return QByteArrayList{"", " ", "\n    ", "\t"}[m_torture.below(4)]; }
    QByteArray field(const char *key, const QByteArray &value)
    {
        return QByteArray("\"") + key + "\"" + blank() + ":" + blank() + value;
    }

    Torture &m_torture;
    bool m_mustDecode = true;
    QByteArrayList m_fields;
};

} // namespace quire::testing
