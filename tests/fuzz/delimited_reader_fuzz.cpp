// Any bytes as delimited text, as the import reads them. Records and fields must lie in the text, in order, and a
// record that was counted must be readable field by field.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "interchange/engine/delimited_reader.h"
#include "interchange/engine/import_text.h"
#include "interchange/engine/import_values.h"

namespace {

void Check(bool holds)
{
    if (!holds)
        std::abort();
}

void ReadRecord(jotlet::DelimitedReader& reader)
{
    const std::string_view text = reader.Text();
    const std::size_t end = reader.Position();
    reader.Rewind();
    const char* last = text.data() + reader.Position();
    int code = jotlet::DelimitedReader::kField;
    while (code == jotlet::DelimitedReader::kField) {
        code = reader.NextField();
        Check(code != jotlet::DelimitedReader::kNoMore);
        const std::string_view field = reader.Field();
        Check(field.data() >= last && field.data() + field.size() <= text.data() + end);
        last = field.data() + field.size();
        jotlet::DateValue date;
        jotlet::TimeValue time;
        jotlet::ParseImportDate(field, date);
        jotlet::ParseImportTime(field, time);
    }
    Check(reader.Position() == end);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < 2)
        return 0;
    jotlet::DelimitedReader reader;
    reader.separator = (data[0] & 1) != 0 ? '\t' : ',';
    reader.qualifier = (data[0] & 2) != 0 ? '"' : '\0';
    const auto ends = (data[0] & 4) != 0 ? jotlet::LineEnds::Auto : jotlet::LineEnds::CrLf;
    reader.SetText(jotlet::PrepareImportText(std::string(reinterpret_cast<const char*>(data + 1), size - 1), ends));

    const std::size_t counted = reader.CountRecords();
    reader.Reset();
    std::size_t found = 0;
    while (reader.NextRecord() == 1) {
        ReadRecord(reader);
        ++found;
    }
    Check(found == counted);
    return 0;
}
