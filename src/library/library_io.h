// Field-by-field I/O of the library's header and section records, the
// scratch block builder and the chunked copies shared by the editing code.
#pragma once

#include <cstdint>

#include "tessaline/library/library.h"

namespace library_io {

inline constexpr char kScratch_Name[] = "temp.$$$";
inline constexpr uint32_t kTable_Offset = kLib_Header_Bytes;

// The 360 header bytes in file order, and back.
void Encode_Header(const tagLibHeader& h, unsigned char out[kLib_Header_Bytes]);
void Decode_Header(const unsigned char in[kLib_Header_Bytes], tagLibHeader& h);
void Write_Header(CFile& f, const tagLibHeader& h);

// The 124 record bytes in file order, and back (the name is terminated
// within its 40 bytes on decoding).
void Encode_Record(const tagCrossRecord& r, unsigned char out[kCross_Record_Bytes]);
void Decode_Record(const unsigned char in[kCross_Record_Bytes], tagCrossRecord& r);
void Write_Record(CFile& f, const tagCrossRecord& r);
// False when fewer than 124 bytes were left.
bool Read_Record(CFile& f, tagCrossRecord& r);

void Write_U32(CFile& f, uint32_t v);

// Copies `source` from its current position to `target`'s, in chunks of
// `chunk` bytes, until a read returns fewer; returns the bytes copied.
uint64_t Copy_Chunks(CFile& source, CFile& target, unsigned chunk);
// Copies exactly `count` bytes (fewer only when the source ends first).
uint64_t Copy_Bytes(CFile& source, CFile& target, uint64_t count);

}  // namespace library_io
