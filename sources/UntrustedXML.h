// An XML document from outside, handed out in pieces that QXmlStreamReader can
// be given without harm. It answers for what the reader does not:
//
// - Encoding: pieces are UTF-8, whatever the document is in, and a byte that
//   does not decode spoils nothing that stands before it.
// - A CDATA section that does not decode is handed out empty.
// - A document type declaration in front is left out, so that no entity is ever
//   declared; anywhere else the document ends there.
// - The reader compares every attribute of a tag with every other: a tag of
//   more than 32 attributes, or with a name too long for the reader, ends the
//   document. So does a tag, comment or CDATA section of more than 4 MiB.
//
// - Comments and processing instructions, which cost the reader more than text,
//   are left out.
//
// Apart from this it judges nothing: syntax is the reader's.
//
// Thread: any; one document on one thread.

#pragma once

#include "sources/XMLEncoding.h"

#include <QByteArray>
#include <QByteArrayView>

namespace quire {

class UntrustedXML
{
public:
    static constexpr int maximumAttributes = 32;
    static constexpr qsizetype maximumNames = 4000; // bytes of a tag outside its attributes' values
    static constexpr qsizetype maximumMarkup = 4 * 1024 * 1024;

    explicit UntrustedXML(QByteArray document);

    // The next 64 KiB or so; empty at the end.
    QByteArray nextPiece();

private:
    QByteArrayView rest() const { return QByteArrayView(m_text.utf8).sliced(m_text.start); }
    void takeText(QByteArray &piece);
    void takeMarkup(QByteArray &piece);
    void takeComment(QByteArray &piece);
    void takeInstruction(QByteArray &piece);
    void takeCData(QByteArray &piece);
    void takeTag(QByteArray &piece);
    void skipDocumentType();
    void take(qsizetype size, QByteArray &piece);
    void end() { m_text.start = m_text.utf8.size(); }

    XMLText m_text; // what is left of it
    bool m_inProlog = true;
};

} // namespace quire
