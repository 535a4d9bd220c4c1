#include "tests/module/Gadget.h"

template <>
std::span<const DispatchRow> DispatchTable<IGadget>()
{
    using I = IGadget;
    static constexpr DispatchRow kTable[] = {
        MethodRow<&I::Rest>(OLESTR("Rest"), 1),
        MethodRow<&I::Take>(OLESTR("Take"), 2,
                            {OLESTR("nCount"), OLESTR("bsText"), OLESTR("pObject")}),
        MethodRow<&I::TakeMany>(OLESTR("TakeMany"), 3),
        MethodRow<&I::TakeAny>(OLESTR("TakeAny"), 4, {OLESTR("Value")}),
        MethodRow<&I::Fill>(OLESTR("Fill"), 5, {OLESTR("nCount"), OLESTR("bsText")}),
        PropertyRow<&I::get_Level, &I::put_Level>(OLESTR("Level"), 6),
        ReadOnlyRow<&I::get_Label>(OLESTR("Label"), 7),
        ResultRow<&I::get_Names>(OLESTR("Names"), 8, OLESTR("pVal")),
    };
    return kTable;
}
