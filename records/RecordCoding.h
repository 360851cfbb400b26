// The keyed serialised form of records: CBOR maps whose keys are the names of
// the fields. Optional fields are written only when present; cover bytes are
// byte strings, URLs their text.
//
// Reading is strict: a missing key of a field that is not optional, a value of
// another type, a URL that is none, or an end before the end throws
// RecordCodingError, and the whole record with it. Keys that the record does
// not know are passed over, and numbers are taken as they are.
//
// Thread: pure but for the stream; any thread, one at a time a stream.

#pragma once

#include "records/Audiobook.h"
#include "records/Book.h"
#include "records/CatalogBooks.h"
#include "records/CustomAccentColor.h"
#include "records/Failure.h"
#include "records/TagCount.h"

class QCborStreamReader;
class QCborStreamWriter;

namespace quire {

class RecordCodingError final : public Failure
{
public:
    // detail: what was wrong, and where.
    explicit RecordCodingError(QString detail);

    QString description() const override;

private:
    QString m_detail;
};

// Appends one map. The device's own failures show at the device.
void encode(QCborStreamWriter &writer, const Book &book);
void encode(QCborStreamWriter &writer, const Audiobook &audiobook);
void encode(QCborStreamWriter &writer, const TagCount &tagCount);
void encode(QCborStreamWriter &writer, const AudibleCatalogBook &book);
void encode(QCborStreamWriter &writer, const CustomAccentColor &color);

// Reads the record that stands next in the stream, and leaves the stream after
// it. After a failure the stream is of no more use. decode<Book>(reader).
template<typename Record>
Record decode(QCborStreamReader &reader);
template<>
Book decode(QCborStreamReader &reader);
template<>
Audiobook decode(QCborStreamReader &reader);
template<>
TagCount decode(QCborStreamReader &reader);
template<>
AudibleCatalogBook decode(QCborStreamReader &reader);
template<>
CustomAccentColor decode(QCborStreamReader &reader);

} // namespace quire
