// The handle table behind GlobalAlloc and its companions.
#include "tessaline/platform/memory.h"

#include "platform/memory_internal.h"

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <mutex>
#include <vector>

namespace {

constexpr uint32_t kIndexBits = 22;
constexpr uint32_t kIndexMask = (1u << kIndexBits) - 1;
constexpr uint32_t kMaxGeneration = (1u << (32 - kIndexBits)) - 1;  // 1023
// SIZE_T is 64 bits on every target; a block within the bound also fits a
// 32-bit size_t, so sizes are checked against it before they reach the C
// library.
constexpr SIZE_T kMaxBlockBytes = SIZE_T{1} << 30;
static_assert(kMaxBlockBytes <= SIZE_MAX, "a block's size fits size_t");

size_t Bytes(SIZE_T n) {
  return static_cast<size_t>(n);  // n <= kMaxBlockBytes
}

struct Slot {
  unsigned char* data = nullptr;
  SIZE_T size = 0;      // bytes the caller asked for
  SIZE_T capacity = 0;  // bytes held; the bytes past size are always zero
  uint32_t generation = 1;
  uint32_t locks = 0;
  bool live = false;
};

struct Table {
  std::mutex mutex;
  std::vector<Slot> slots{1};  // slot 0 is never used: handle 0 means none
  std::deque<uint32_t> free_slots;
  long live_blocks = 0;
};

// The table lives until the module releases it (Release_Memory_Table, when
// the library is unloaded); a call after that starts a fresh one, so blocks
// freed during exit never reach freed memory.
std::atomic<Table*> the_table{nullptr};
std::mutex creation;

Table& table() {
  Table* t = the_table.load(std::memory_order_acquire);
  if (t) return *t;
  std::lock_guard<std::mutex> guard(creation);
  t = the_table.load(std::memory_order_relaxed);
  if (!t) {
    t = new Table;
    the_table.store(t, std::memory_order_release);
  }
  return *t;
}

std::atomic<long> fail_countdown{0};

// True when the test hook says this allocation must fail.
bool injected_failure() {
  long n = fail_countdown.load();
  while (n > 0) {
    if (fail_countdown.compare_exchange_weak(n, n - 1)) return n == 1;
  }
  return false;
}

HGLOBAL make_handle(uint32_t index, uint32_t generation) {
  return (generation << kIndexBits) | index;
}

// The live slot a handle names, or null. Call with the mutex held.
Slot* find(Table& t, HGLOBAL h) {
  uint32_t index = h & kIndexMask;
  uint32_t generation = h >> kIndexBits;
  if (index == 0 || index >= t.slots.size()) return nullptr;
  Slot& s = t.slots[index];
  if (!s.live || s.generation != generation) return nullptr;
  return &s;
}

}  // namespace

HGLOBAL GlobalAlloc(UINT /*flags*/, SIZE_T bytes) {
  if (bytes > kMaxBlockBytes || injected_failure()) return 0;
  unsigned char* data = nullptr;
  if (bytes > 0) {
    data = static_cast<unsigned char*>(std::calloc(Bytes(bytes), 1));
    if (!data) return 0;
  }
  Table& t = table();
  std::lock_guard<std::mutex> guard(t.mutex);
  uint32_t index;
  if (!t.free_slots.empty()) {
    index = t.free_slots.front();
    t.free_slots.pop_front();
  } else {
    if (t.slots.size() > kIndexMask) {
      std::free(data);
      return 0;
    }
    index = static_cast<uint32_t>(t.slots.size());
    t.slots.emplace_back();
  }
  Slot& s = t.slots[index];
  s.data = data;
  s.size = bytes;
  s.capacity = bytes;
  s.locks = 0;
  s.live = true;
  ++t.live_blocks;
  return make_handle(index, s.generation);
}

void* GlobalLock(HGLOBAL h) {
  Table& t = table();
  std::lock_guard<std::mutex> guard(t.mutex);
  Slot* s = find(t, h);
  if (!s || s->size == 0) return nullptr;
  if (s->locks < 255) ++s->locks;
  return s->data;
}

void* Global_Lock_Sized(HGLOBAL h, SIZE_T* bytes) {
  Table& t = table();
  std::lock_guard<std::mutex> guard(t.mutex);
  Slot* s = find(t, h);
  if (!s || s->size == 0) {
    *bytes = 0;
    return nullptr;
  }
  if (s->locks < 255) ++s->locks;
  *bytes = s->size;
  return s->data;
}

BOOL GlobalUnlock(HGLOBAL h) {
  Table& t = table();
  std::lock_guard<std::mutex> guard(t.mutex);
  Slot* s = find(t, h);
  if (!s || s->locks == 0) return FALSE;
  --s->locks;
  return s->locks > 0 ? TRUE : FALSE;
}

HGLOBAL GlobalReAlloc(HGLOBAL h, SIZE_T bytes, UINT /*flags*/) {
  if (bytes > kMaxBlockBytes) return 0;
  Table& t = table();
  std::lock_guard<std::mutex> guard(t.mutex);
  Slot* s = find(t, h);
  if (!s) return 0;
  if (bytes <= s->capacity) {
    if (bytes < s->size) std::memset(s->data + bytes, 0, Bytes(s->size - bytes));
    s->size = bytes;
    return h;
  }
  if (injected_failure()) return 0;
  // Keep spare room so that a block grown a little at a time is copied only
  // a logarithmic number of times.
  SIZE_T capacity = s->capacity + s->capacity / 2;
  if (capacity < bytes) capacity = bytes;
  if (capacity > kMaxBlockBytes) capacity = kMaxBlockBytes;
  auto* data = static_cast<unsigned char*>(std::calloc(Bytes(capacity), 1));
  if (!data) return 0;
  if (s->size > 0) std::memcpy(data, s->data, Bytes(s->size));
  std::free(s->data);
  s->data = data;
  s->size = bytes;
  s->capacity = capacity;
  return h;
}

SIZE_T GlobalSize(HGLOBAL h) {
  Table& t = table();
  std::lock_guard<std::mutex> guard(t.mutex);
  Slot* s = find(t, h);
  return s ? s->size : 0;
}

HGLOBAL GlobalFree(HGLOBAL h) {
  Table& t = table();
  std::lock_guard<std::mutex> guard(t.mutex);
  Slot* s = find(t, h);
  if (!s) return h;
  std::free(s->data);
  s->data = nullptr;
  s->size = s->capacity = 0;
  s->locks = 0;
  s->live = false;
  s->generation = s->generation % kMaxGeneration + 1;
  t.free_slots.push_back(h & kIndexMask);
  --t.live_blocks;
  return 0;
}

int GlobalLockCount(HGLOBAL h) {
  Table& t = table();
  std::lock_guard<std::mutex> guard(t.mutex);
  Slot* s = find(t, h);
  return s ? static_cast<int>(s->locks) : -1;
}

long GlobalBlockCount() {
  Table& t = table();
  std::lock_guard<std::mutex> guard(t.mutex);
  return t.live_blocks;
}

void SetGlobalAllocFailure(long n) {
  fail_countdown.store(n > 0 ? n : 0);
}

void Release_Memory_Table() {
  std::lock_guard<std::mutex> guard(creation);
  Table* t = the_table.exchange(nullptr);
  if (!t) return;
  for (Slot& s : t->slots) std::free(s.data);
  delete t;
}
