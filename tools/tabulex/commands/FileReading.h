// FileReading: how one of the files of a command is read: as the command line says, or as advised.
#pragma once

#include "tools/tabulex/commands/Commands.h"

namespace tabulex {

struct FileReading
{
    intake::Recipe recipe;
    Settings settings;
};

// By the command line alone, or with --auto by what is advised for the file: then one line on
// standard error says what is done, and what is doubtful is a warning. Throws Fault where two
// readings are as good, or none comes out well.
FileReading ReadingOf(const Context& context, const InputFile& input, Warnings& warnings);

// Of a file that is refused: what the advised command is, as a further sentence; empty where none
// is known, or where the command line has a recipe already.
std::string AdvisedInstead(const Context& context, const InputFile& input);

} // namespace tabulex
