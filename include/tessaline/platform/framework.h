// Stand-ins for the class framework the system's classes are written
// against: strings, string arrays and the growable array template.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

using CString = std::string;
using CStringArray = std::vector<CString>;

// A growable array with the framework's interface. Indexes are int; an index
// outside the array is an argument error and throws std::out_of_range, which
// the library's own code never lets cross its exported interface.
template <class TYPE, class ARG_TYPE = const TYPE&>
class CArray {
 public:
  CArray() = default;
  virtual ~CArray() = default;
  CArray(const CArray&) = default;
  CArray& operator=(const CArray&) = default;

  int GetSize() const { return static_cast<int>(items_.size()); }
  int GetCount() const { return GetSize(); }
  int GetUpperBound() const { return GetSize() - 1; }
  bool IsEmpty() const { return items_.empty(); }
  void SetSize(int n, int /*grow_by*/ = -1) { items_.resize(n > 0 ? static_cast<size_t>(n) : 0); }

  const TYPE& GetAt(int i) const { return items_.at(Checked(i)); }
  TYPE& GetAt(int i) { return items_.at(Checked(i)); }
  TYPE& ElementAt(int i) { return items_.at(Checked(i)); }
  void SetAt(int i, ARG_TYPE value) { items_.at(Checked(i)) = value; }
  const TYPE& operator[](int i) const { return GetAt(i); }
  TYPE& operator[](int i) { return GetAt(i); }
  const TYPE* GetData() const { return items_.data(); }
  TYPE* GetData() { return items_.data(); }

  // Sets element i, growing the array to hold it.
  void SetAtGrow(int i, ARG_TYPE value) {
    if (i < 0) throw std::out_of_range("CArray index");
    if (static_cast<size_t>(i) >= items_.size()) items_.resize(static_cast<size_t>(i) + 1);
    items_[static_cast<size_t>(i)] = value;
  }
  int Add(ARG_TYPE value) {
    items_.push_back(value);
    return GetUpperBound();
  }
  int Append(const CArray& other) {
    int first = GetSize();
    items_.insert(items_.end(), other.items_.begin(), other.items_.end());
    return first;
  }
  void InsertAt(int i, ARG_TYPE value, int count = 1) {
    if (i < 0 || i > GetSize() || count < 0) throw std::out_of_range("CArray index");
    items_.insert(items_.begin() + i, static_cast<size_t>(count), value);
  }
  void RemoveAt(int i, int count = 1) {
    if (i < 0 || count < 0 || i + count > GetSize()) throw std::out_of_range("CArray index");
    items_.erase(items_.begin() + i, items_.begin() + i + count);
  }
  void RemoveAll() { items_.clear(); }

 private:
  static size_t Checked(int i) {
    if (i < 0) throw std::out_of_range("CArray index");
    return static_cast<size_t>(i);
  }
  std::vector<TYPE> items_;
};
