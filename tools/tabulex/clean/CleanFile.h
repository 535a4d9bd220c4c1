// CleanFile: a file of the command line as the component reads it, after a recipe.
//
// Without a recipe it is the file that the input found, at no cost. With one, the clean text goes
// to a temporary file that is gone when the object is, and lines keep the numbers and texts of the
// user's file. Memory doesn't grow with the file. Used by one thread.
#pragma once

#include <memory>
#include <string>

#include "intake/Intake.h"
#include "tools/tabulex/account/Account.h"
#include "tools/tabulex/account/Warnings.h"
#include "tools/tabulex/host/LineSource.h"
#include "tools/tabulex/host/Settings.h"
#include "tools/tabulex/input/InputFile.h"
#include "tools/tabulex/system/SpillFile.h"

namespace tabulex {

class CleanFile
{
public:
    // Both must outlive this. Throws Fault for a recipe that can't be done, a temporary folder that
    // is full or can't be written, and a file that changed meanwhile.
    CleanFile(const InputFile& input, const intake::Recipe& recipe, Warnings& warnings);
    ~CleanFile();
    CleanFile(const CleanFile&) = delete;
    CleanFile& operator=(const CleanFile&) = delete;

    const InputFile& Input() const { return m_input; }
    const intake::Recipe& Recipe() const { return m_recipe; }
    // What messages show.
    const std::string& Name() const { return m_input.Name(); }
    // What the component opens.
    const std::string& Path() const;
    // For Host::SetSource; null where the component opens the user's file.
    LineSource* Source() const { return m_source.get(); }

    // The settings with what is known of clean lines; types of columns that the user has given go
    // ahead.
    Settings SettingsOf(const Settings& given) const { return SettingsOf(m_recipe, given); }
    // The same for lines that were cleaned by a recipe elsewhere.
    static Settings SettingsOf(const intake::Recipe& recipe, const Settings& given);
    // The account of the user's lines, from that of the clean ones.
    Account AccountOf(const Account& ofClean) const;
    const intake::IntakeAccount& Done() const { return m_done; }

private:
    void Clean();

    const InputFile& m_input;
    const intake::Recipe m_recipe;
    std::unique_ptr<SpillFile> m_copy; // null for an empty recipe
    intake::IntakeAccount m_done;
    std::unique_ptr<LineSource> m_source;
};

// What a person should know of what was done.
void WarnOfCleaning(const intake::IntakeAccount& done, Warnings& warnings);

} // namespace tabulex
