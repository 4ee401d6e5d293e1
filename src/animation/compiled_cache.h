#pragma once

#include <cstdio>

#include "foundation/byte_stream.h"

// The compiled stream (.ca) that is kept beside a cut.
namespace sorvel {

// Opens the stream for reading, at its start. Null if there is none or if it isn't whole: a file that ends early, that
// goes on behind its last frame or whose frames don't hold together is made again. Its age doesn't matter here.
FILE* OpenCache(const char* path);

// Keeps a copy of a stream, whole or not at all. False, with the old file as it was, if it can't be written.
bool KeepCache(ByteStream* compiled, const char* path);

}  // namespace sorvel
