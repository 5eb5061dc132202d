#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace jotlet {

// Cuts delimited text into records and fields.
//
// Only the pair CR LF ends a record; a lone CR or LF is ordinary text. A field that begins with the qualifier (or with
// a double quote when there is none) is quoted: it may hold separators and line ends, and ends where its double quotes
// are even in number. Doubled quotes stay doubled. What stands behind the last CR LF, or behind a quote that is never
// closed, is no record.
//
// Units:   bytes. Time is linear in the text, whatever it holds; memory is the text itself.
// Owns:    the text. Slices point into it and die with the next LoadText or SetText.
// Errors:  nothing throws; see each operation's result.
class DelimitedReader {
public:
    // Takes the whole file as it stands, then does what SetText does. 1, or 0 when it cannot be read.
    int LoadText(const std::string& path);

    // Takes the text and makes sure of its last line end: CR LF is added unless the last byte is LF or the last but one
    // is CR. An empty text stays empty. Ends with Reset.
    void SetText(std::string newText);

    // Back to the start. The text counts up to its first zero byte.
    void Reset();

    // Runs over one whole record and stands behind it. 1 when it ended in CR LF, 0 at the end of the data.
    int NextRecord();
    // Back to the start of the record that NextRecord ran over last.
    void Rewind() { pos = recordStart; }

    static constexpr int kNoMore = 0;
    static constexpr int kField = 1;
    static constexpr int kLastFieldOfRecord = -2;
    // The next field. Field() is valid after kField and kLastFieldOfRecord.
    int NextField();
    std::string_view Field() const { return std::string_view(text).substr(fieldStart, fieldLength); }

    // Records from the start to the end of the data; ends with the reader there.
    std::size_t CountRecords();

    // The text up to its first zero byte, the added line end included.
    std::string_view Text() const { return std::string_view(text).substr(0, length); }
    // After CountRecords, or NextRecord with 0: true when text stands behind the last whole record.
    bool HasIncompleteEnd() const { return recordStart < length; }
    // At the same moment: the line of the text on which the last whole record ended, from 1; 0 when there was none.
    std::size_t LastWholeLine() const;
    // Where the next field starts; a measure of progress through Text().
    std::size_t Position() const { return pos; }

    // The first comma or tab decides; comma when there is neither.
    static char DetectSeparator(std::string_view text);
    // A double quote when it is the first byte, else 0 for none.
    static char DetectQualifier(std::string_view text);

    char separator = ',';
    char qualifier = '"';  // 0 for none

private:
    struct Token {
        std::size_t start = 0;
        std::size_t length = 0;
        int code = kNoMore;
    };
    Token ReadToken();
    Token ReadQuoted(char quote);
    Token ReadPlain();
    bool EndsRecordAt(std::size_t at) const;

    std::string text;
    std::size_t length = 0;
    std::size_t pos = 0;
    std::size_t recordStart = 0;
    std::size_t fieldStart = 0;
    std::size_t fieldLength = 0;
};

}  // namespace jotlet
