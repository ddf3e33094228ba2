#include "csv.h"

#include <cerrno>
#include <cmath>
#include <cstdlib>

namespace tessaline::app {

int Csv_Table::Column(std::string_view name) const {
  for (size_t i = 0; i < header.size(); ++i)
    if (header[i] == name) return static_cast<int>(i);
  return -1;
}

namespace {

// Reads one record starting at `pos`; returns false on an unterminated quote.
bool Read_Record(std::string_view text, size_t* pos, std::vector<std::string>* cells) {
  cells->clear();
  std::string cell;
  bool quoted = false;
  size_t i = *pos;
  for (; i < text.size(); ++i) {
    char c = text[i];
    if (quoted) {
      if (c == '"') {
        if (i + 1 < text.size() && text[i + 1] == '"') {
          cell += '"';
          ++i;
        } else {
          quoted = false;
        }
      } else {
        cell += c;
      }
    } else if (c == '"') {
      quoted = true;
    } else if (c == ',') {
      cells->push_back(std::move(cell));
      cell.clear();
    } else if (c == '\n' || c == '\r') {
      break;
    } else {
      cell += c;
    }
  }
  if (quoted) return false;
  cells->push_back(std::move(cell));
  if (i < text.size() && text[i] == '\r') ++i;
  if (i < text.size() && text[i] == '\n') ++i;
  *pos = i;
  return true;
}

bool Blank(const std::vector<std::string>& cells) {
  return cells.size() == 1 && cells[0].find_first_not_of(" \t") == std::string::npos;
}

}  // namespace

bool Parse_Csv(std::string_view text, Csv_Table* table, std::string* error) {
  table->header.clear();
  table->rows.clear();
  size_t pos = 0;
  int line = 0;
  std::vector<std::string> cells;
  while (pos < text.size()) {
    ++line;
    if (!Read_Record(text, &pos, &cells)) {
      *error = "line " + std::to_string(line) + ": unterminated quote";
      return false;
    }
    if (Blank(cells)) continue;
    if (table->header.empty()) {
      table->header = cells;
      continue;
    }
    if (cells.size() > table->header.size()) {
      *error = "line " + std::to_string(line) + ": " + std::to_string(cells.size()) +
               " cells, the header has " + std::to_string(table->header.size());
      return false;
    }
    cells.resize(table->header.size());
    table->rows.push_back(cells);
  }
  if (table->header.empty()) {
    *error = "no header line";
    return false;
  }
  return true;
}

bool Parse_Number(std::string_view cell, double* value) {
  while (!cell.empty() && cell.front() == ' ') cell.remove_prefix(1);
  while (!cell.empty() && cell.back() == ' ') cell.remove_suffix(1);
  if (cell.empty() || cell.size() > 64) return false;
  std::string s(cell);
  char* end = nullptr;
  errno = 0;
  double v = std::strtod(s.c_str(), &end);
  if (end != s.c_str() + s.size() || errno == ERANGE || !std::isfinite(v)) return false;
  *value = v;
  return true;
}

}  // namespace tessaline::app
