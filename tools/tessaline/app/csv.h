// A small reader of comma-separated tables: the standard-shape tables that
// ship with the program.
//
// The first line is the header. Cells may be quoted ("a,b", "" for a quote);
// line ends may be LF or CRLF; blank lines are skipped. A row with fewer
// cells than the header is padded with empty cells, one with more is an
// error, as is an unterminated quote.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tessaline::app {

struct Csv_Table {
  std::vector<std::string> header;
  std::vector<std::vector<std::string>> rows;

  // Column index of `name`, or -1.
  int Column(std::string_view name) const;
};

// Parses `text`; on failure returns false and says why in `error`
// ("line 12: unterminated quote").
bool Parse_Csv(std::string_view text, Csv_Table* table, std::string* error);

// Parses a whole cell as a finite number; an empty or malformed cell gives false.
bool Parse_Number(std::string_view cell, double* value);

}  // namespace tessaline::app
