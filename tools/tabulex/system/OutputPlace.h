// OutputPlace: what the name of an output stands for, and so how it is to be written.
//
// Links are followed as the system follows them: what they lead to is written, and they stay.
#pragma once

#include <string>

namespace tabulex {

enum class PlaceKind
{
    File,   // a regular file, or a name that is free: made beside it, and renamed
    Device, // a device or a pipe: opened, and written straight
    Stream  // a stream that the program has open, by a name such as /dev/stdout
};

struct OutputPlace
{
    PlaceKind kind = PlaceKind::File;
    std::string sTarget;  // of a File: its path without links, whether it exists or not
    bool bExists = false; // of a File
    int nStream = -1;     // of a Stream: its descriptor
    std::string sFault;   // why it can't be written, as far as that is known; empty if nothing is
};

// Looks only.
OutputPlace FindPlace(const std::string& path);

// The same for a place that is going to be written: a file that may not be written is a fault,
// though another one could take its place.
OutputPlace FindWritablePlace(const std::string& path);

// Why a file must stay as it is; empty if it needn't.
std::string WhyNotReplaced(const std::string& file);

// Whether both lead to one file, device or stream, which need not exist yet. Standard output is
// "-", too.
bool AreSamePlace(const std::string& a, const std::string& b);

} // namespace tabulex
