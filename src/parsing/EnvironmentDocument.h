// The environment: the user's settings as one text that a host keeps.
//
//   <ENVIRONMENT>
//   <TABULEXCONVERTOR_ENVIRONMENT>
//   <PATH>"the folder last used"</PATH>
//   <RECT>...</RECT>
//   </TABULEXCONVERTOR_ENVIRONMENT>
//
//   <RECORD_PARSER_ENVIRONMENT><TYPE><NAME>"Date"</NAME><TEMPLATE>"*y/*m/*d"</TEMPLATE>
//   ...</TYPE><TYPE><NAME>"Time"</NAME>...</TYPE></RECORD_PARSER_ENVIRONMENT>
//   </ENVIRONMENT>
//
// Lines end with CR LF, and the record parser's document has none. Values stand
// between double quotes as they are: one that holds a '<' can't be read back, and
// quotes at its ends are lost. Each side is given the whole text and reads its own
// part of it.
#pragma once

#include "src/parsing/DataTypes.h"

namespace Hesperon::specifics {

// ---- the record parser's part: the templates of dates and times

string_t WriteTemplates(const TypeTable& types);

// Adds the templates to the lists as ones that can be removed; what stands there
// stays. False where the text can't be read to its end; the templates ahead of the
// fault have been added.
bool ReadTemplates(string_view_t sText, TypeTable& types);

// ---- the whole text, and the front object's part of it: a folder

string_t WriteEnvironment(string_view_t sFolder, string_view_t sTemplates);

// Leaves the folder as it is if the text has none. False as above.
bool ReadFolder(string_view_t sText, string_t& sFolder);

} // namespace Hesperon::specifics
