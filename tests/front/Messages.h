// The texts of the component's string table that tests of hosts compare with.
#pragma once

inline constexpr char kNoResolutionName[] = "\u65e0";          // of the row for none
inline constexpr char kUnknownResolution[] = "\u672a\u77e5";   // of an id without a row
inline constexpr char kUndefinedType[] = "\u672a\u5b9a\u4e49"; // of a column without a type
inline constexpr char kBadDateRangeFault[] = "error -1 \u6570\u636e\u5468\u671f\u65e0\u6548\u3002";
inline constexpr char kNoResolutionFault[] = "error -1 \u672a\u9009\u62e9\u5468\u671f\u3002";
