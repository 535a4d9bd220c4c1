// The clone of a data parser, as its class.
#pragma once

#include "src/data/DataParser.h"
#include "tests/support/Objects.h"

inline com_ptr<Hesperon::specifics::CDataParser> CloneOf(Hesperon::specifics::CDataParser& source)
{
    using IQRL_TabulexConverter::IDataParser;
    // The object's first interface, and with it the object, lies at this address.
    return com_ptr<Hesperon::specifics::CDataParser>(static_cast<Hesperon::specifics::CDataParser*>(
        static_cast<Dual<IDataParser>*>(CloneOf<IDataParser>(source).get())));
}
