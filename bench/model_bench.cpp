// Movable memory and objects arrays.
#include <benchmark/benchmark.h>

#include <vector>

#include <tessaline/tessaline.h>

// One lock/unlock pair of a live handle, with a few thousand other blocks live.
static void BM_LockUnlockPair(benchmark::State& state) {
  std::vector<HGLOBAL> others;
  for (int i = 0; i < 4096; ++i) others.push_back(GlobalAlloc(GHND, 96));
  HGLOBAL h = others[2048];
  for (auto _ : state) {
    void* p = GlobalLock(h);
    benchmark::DoNotOptimize(p);
    GlobalUnlock(h);
  }
  for (HGLOBAL o : others) GlobalFree(o);
}
BENCHMARK(BM_LockUnlockPair);

// Appending n handles one at a time to a fresh array: the array grows by one
// slot per overflow, so the time must stay linear in n.
static void BM_AppendHandles(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  HGLOBAL element = Create_Point(0, 0);
  for (auto _ : state) {
    Objects_Array_Type a = {};
    for (int i = 0; i < n; ++i) Add_Element_In_Array_by_Handle(&a, element);
    benchmark::DoNotOptimize(a.count);
    state.PauseTiming();
    DeleteObjectsArray_Without_El_Deleting(&a);
    state.ResumeTiming();
  }
  Delete_Element(element);
  state.SetItemsProcessed(state.iterations() * n);
}
BENCHMARK(BM_AppendHandles)->Arg(10000)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);

// Creating and deleting a segment element (allocation, fill, free).
static void BM_CreateDeleteSegment(benchmark::State& state) {
  for (auto _ : state) {
    HGLOBAL h = Create_Line(0, 0, 1, 1);
    benchmark::DoNotOptimize(h);
    Delete_Element(h);
  }
}
BENCHMARK(BM_CreateDeleteSegment);
