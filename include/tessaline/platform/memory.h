// Movable global memory: a handle table standing in for the Win32 heap.
//
// A block is reached only by locking its handle; the pointer is valid until
// the matching unlock, a reallocation or the free. Every call is safe from
// several threads at once (the table guards itself).
#pragma once

#include "tessaline/export.h"
#include "tessaline/platform/win_types.h"

// Allocates a block of `bytes` bytes (zero-filled with GMEM_ZEROINIT; this
// table zero-fills always, so contents are never indeterminate). Returns 0
// when the size is beyond the table's bound (1 GiB) or memory is exhausted.
// A block of 0 bytes is allowed; it locks to null, as a discarded block does.
TESSALINE_API HGLOBAL GlobalAlloc(UINT flags, SIZE_T bytes);

// Pointer to the block's bytes and lock count + 1; null for 0, a freed, stale
// or made-up handle, or a block of 0 bytes.
TESSALINE_API void* GlobalLock(HGLOBAL h);

// Lock count - 1. Returns nonzero while the block stays locked, 0 when it is
// unlocked now (or the handle is not valid, or it was not locked).
TESSALINE_API BOOL GlobalUnlock(HGLOBAL h);

// Changes the block's size keeping its contents; growth is zero-filled.
// Returns the same handle, or 0 on failure with the block unchanged. The
// table keeps spare room behind a block, so growing a block a little at a
// time costs amortised constant time per step.
TESSALINE_API HGLOBAL GlobalReAlloc(HGLOBAL h, SIZE_T bytes, UINT flags);

// The block's size in bytes as last allocated, 0 for an invalid handle.
TESSALINE_API SIZE_T GlobalSize(HGLOBAL h);

// Frees the block. Returns 0 on success and the handle itself on failure
// (a freed, stale or made-up handle).
TESSALINE_API HGLOBAL GlobalFree(HGLOBAL h);

// The lock count of a live block (0 to 255, as GlobalFlags reports it), or
// -1 for an invalid handle.
TESSALINE_API int GlobalLockCount(HGLOBAL h);

// Number of live blocks: lets tests prove that nothing leaks.
TESSALINE_API long GlobalBlockCount();

// Test hook: the n-th allocation or growing reallocation from now (1 = the
// next one) fails as if memory were exhausted; 0 disarms the hook.
TESSALINE_API void SetGlobalAllocFailure(long n);
