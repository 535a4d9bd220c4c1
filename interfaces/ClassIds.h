// Class identifiers of the components that a host can create.
#pragma once

#include "platform/component.h"

namespace IQRL_TabulexConverter {

// {40F34F54-56A2-4480-A140-4292A273F7C2}
inline constexpr CLSID CLSID_CRecordParser = {
    0x40F34F54, 0x56A2, 0x4480, {0xA1, 0x40, 0x42, 0x92, 0xA2, 0x73, 0xF7, 0xC2}};
// {74D8EF1E-2860-400A-BC14-48001088D6D2}
inline constexpr CLSID CLSID_CDataParser = {
    0x74D8EF1E, 0x2860, 0x400A, {0xBC, 0x14, 0x48, 0x00, 0x10, 0x88, 0xD6, 0xD2}};
// {14F2854F-6B57-495D-93D3-FFF27353A6A9}
inline constexpr CLSID CLSID_CqrlValueMultiplier = {
    0x14F2854F, 0x6B57, 0x495D, {0x93, 0xD3, 0xFF, 0xF2, 0x73, 0x53, 0xA6, 0xA9}};

} // namespace IQRL_TabulexConverter
