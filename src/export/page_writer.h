#pragma once

#include <string>

#include "export/shown_film.h"
#include "foundation/byte_stream.h"
#include "foundation/progress.h"

namespace sorvel {

// Whether a page has a place for a film.
bool IsPlayerPage(const std::string& page);

// Writes a page that plays a film, out of a page with places for it: see platform::PlayerPage(). The film is part of
// the page, or if `address` isn't empty, the page fetches it from that file beside it. False if the stream can't be
// read or the work was stopped; a failed write goes unnoticed here.
bool WritePage(std::string page, const ShownFilm& film, ByteStream* compiled, const std::string& address,
               ByteStream* out, const ProgressFunction& progress = {});

// The name of a file as the address of one in the same folder.
std::string AddressOf(const std::string& name);

}  // namespace sorvel
