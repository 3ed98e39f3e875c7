#include "core/Note.h"
#include "core/String+HTML.h"
#include "tests/fuzz/FuzzTarget.h"

// The words of a note, for the list and the search.

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString text = textOf(data, size);
    require(fastStrippingHTML(text).size() <= text.size(), "a text is no longer than its markup");
    require(decodeNumericEntities(text).size() <= text.size(), "decoding makes nothing longer");
    const std::optional<FirstHeading> heading = firstHeading(text);
    require(!heading || (heading->start >= 0 && heading->length >= heading->innerHTML.size() &&
                         heading->start + heading->length <= text.size()),
            "a heading lies within its text");
    Note note;
    note.body = text;
    require(note.headingText().size() <= text.size(), "a heading is no longer than its note");
    return 0;
}
