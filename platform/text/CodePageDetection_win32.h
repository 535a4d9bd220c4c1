// The detection of code pages, with the service that does it as an argument: a system may
// offer the service and fail all its calls.
#pragma once

#include <functional>

#include <mlang.h>

#include "platform/text/CodePage.h"

// IMultiLanguage2::DetectInputCodepage: the bytes and their count, the room for entries and
// its size, which becomes the count of those that were found.
using DetectInputCodepage =
    std::function<HRESULT(char* pBytes, INT& nBytes, DetectEncodingInfo* pEntries, INT& nEntries)>;

// As DetectCodePages of platform/CodePage.h; a call that fails has found none.
std::vector<DetectedCodePage> DetectCodePages(std::string_view bytes, std::size_t nMost,
                                              const DetectInputCodepage& detect);
