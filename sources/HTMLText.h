// Plain text from the fragments of HTML that outside services put into titles
// and summaries.
//
// Thread: pure functions, any thread. Time and memory grow linearly with the
// text, whatever it holds.

#pragma once

#include <QString>

#include <optional>

namespace quire::HTMLText {

// The six entities &amp; &lt; &gt; &quot; &#39; &nbsp; replaced, the ampersand
// first and until none is left: what was escaped twice is decoded twice. All
// others stay as they are.
QString decode(const QString &text);

// Without tags: line breaks and the ends of paragraphs become line feeds, other
// tags a space; entities decoded, runs of blanks and of line feeds shortened,
// both ends trimmed. maximumLength: in user-perceived characters; a longer text
// is cut there and gets "..." appended.
QString plainText(const QString &text, std::optional<qsizetype> maximumLength = std::nullopt);

} // namespace quire::HTMLText
