// The component value layer where the system has none: the published names,
// numbers and memory layouts of a 64-bit build, limited to what this library
// uses. Include platform/component.h, never this file.
//
// Ownership follows the published rules: a BSTR or array that a call returns
// belongs to the caller, an interface pointer returned carries one reference,
// [in] arguments are borrowed for the length of the call. No call throws.
// All calls may be used from any thread; values themselves are not locked.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#define TABULEX_API __attribute__((visibility("default")))
#define STDMETHODCALLTYPE
#define STDAPICALLTYPE

// ---- plain types ------------------------------------------------------------

using BYTE = std::uint8_t;
using WORD = std::uint16_t;
using DWORD = std::uint32_t;
using SHORT = std::int16_t;
using USHORT = std::uint16_t;
using INT = int;
using UINT = unsigned int;
using LONG = std::int32_t;
using ULONG = std::uint32_t;
using LONGLONG = long long;
using ULONGLONG = unsigned long long;
using LONG_PTR = std::intptr_t;
using ULONG_PTR = std::uintptr_t;
using BOOL = int;
using FLOAT = float;
using DOUBLE = double;
using PVOID = void*;
using HRESULT = LONG;
using SCODE = LONG;
using LCID = DWORD;
using DISPID = LONG;
using MEMBERID = DISPID;
using VARTYPE = unsigned short;
using VARIANT_BOOL = short;
using DATE = double; // days since 1899-12-30; the fraction is the time of day
using OLECHAR = char16_t;
using LPOLESTR = OLECHAR*;
using LPCOLESTR = const OLECHAR*;
using BSTR = OLECHAR*; // units after a 32-bit byte count; null is allowed and means empty

#define OLESTR(text) u##text

union CY {
    LONGLONG int64; // ten-thousandths
};

struct SYSTEMTIME
{
    WORD wYear, wMonth, wDayOfWeek, wDay, wHour, wMinute, wSecond, wMilliseconds;
};
static_assert(sizeof(SYSTEMTIME) == 16);

inline constexpr VARIANT_BOOL VARIANT_TRUE = -1;
inline constexpr VARIANT_BOOL VARIANT_FALSE = 0;

// ---- identifiers ------------------------------------------------------------

struct GUID
{
    std::uint32_t Data1;
    std::uint16_t Data2;
    std::uint16_t Data3;
    std::uint8_t Data4[8];
};
static_assert(sizeof(GUID) == 16);

constexpr bool operator==(const GUID& a, const GUID& b)
{
    if (a.Data1 != b.Data1 || a.Data2 != b.Data2 || a.Data3 != b.Data3)
        return false;
    for (int i = 0; i < 8; ++i)
        if (a.Data4[i] != b.Data4[i])
            return false;
    return true;
}

using IID = GUID;
using CLSID = GUID;
using REFGUID = const GUID&;
using REFIID = const IID&;
using REFCLSID = const CLSID&;

inline constexpr GUID GUID_NULL{};
#define IID_NULL GUID_NULL

// ---- result codes -----------------------------------------------------------

constexpr HRESULT HresultFromCode(std::uint32_t code)
{
    return static_cast<HRESULT>(code);
}
constexpr bool SUCCEEDED(HRESULT hr)
{
    return hr >= 0;
}
constexpr bool FAILED(HRESULT hr)
{
    return hr < 0;
}
constexpr HRESULT HRESULT_FROM_WIN32(DWORD error)
{
    return static_cast<HRESULT>(error) <= 0 ? static_cast<HRESULT>(error)
                                            : HresultFromCode((error & 0xFFFFu) | 0x80070000u);
}

inline constexpr HRESULT S_OK = 0;
inline constexpr HRESULT S_FALSE = 1;
inline constexpr HRESULT E_NOTIMPL = HresultFromCode(0x80004001);
inline constexpr HRESULT E_NOINTERFACE = HresultFromCode(0x80004002);
inline constexpr HRESULT E_POINTER = HresultFromCode(0x80004003);
inline constexpr HRESULT E_ABORT = HresultFromCode(0x80004004);
inline constexpr HRESULT E_FAIL = HresultFromCode(0x80004005);
inline constexpr HRESULT E_UNEXPECTED = HresultFromCode(0x8000FFFF);
inline constexpr HRESULT E_ACCESSDENIED = HresultFromCode(0x80070005);
inline constexpr HRESULT E_OUTOFMEMORY = HresultFromCode(0x8007000E);
inline constexpr HRESULT E_INVALIDARG = HresultFromCode(0x80070057);
inline constexpr HRESULT DISP_E_MEMBERNOTFOUND = HresultFromCode(0x80020003);
inline constexpr HRESULT DISP_E_TYPEMISMATCH = HresultFromCode(0x80020005);
inline constexpr HRESULT DISP_E_UNKNOWNNAME = HresultFromCode(0x80020006);
inline constexpr HRESULT DISP_E_NONAMEDARGS = HresultFromCode(0x80020007);
inline constexpr HRESULT DISP_E_BADVARTYPE = HresultFromCode(0x80020008);
inline constexpr HRESULT DISP_E_EXCEPTION = HresultFromCode(0x80020009);
inline constexpr HRESULT DISP_E_OVERFLOW = HresultFromCode(0x8002000A);
inline constexpr HRESULT DISP_E_BADINDEX = HresultFromCode(0x8002000B);
inline constexpr HRESULT DISP_E_ARRAYISLOCKED = HresultFromCode(0x8002000D);
inline constexpr HRESULT DISP_E_BADPARAMCOUNT = HresultFromCode(0x8002000E);
inline constexpr HRESULT TYPE_E_ELEMENTNOTFOUND = HresultFromCode(0x8002802B);
inline constexpr HRESULT TYPE_E_CANTLOADLIBRARY = HresultFromCode(0x80029C4A);
inline constexpr HRESULT CLASS_E_NOAGGREGATION = HresultFromCode(0x80040110);
inline constexpr HRESULT CLASS_E_CLASSNOTAVAILABLE = HresultFromCode(0x80040111);
inline constexpr HRESULT REGDB_E_CLASSNOTREG = HresultFromCode(0x80040154);
inline constexpr HRESULT OLE_E_BLANK = HresultFromCode(0x80040007);

inline constexpr DWORD ERROR_NOT_ENOUGH_MEMORY = 8;

// ---- interfaces -------------------------------------------------------------

struct IUnknown
{
    virtual HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** ppvObject) = 0;
    virtual ULONG STDMETHODCALLTYPE AddRef() = 0;
    virtual ULONG STDMETHODCALLTYPE Release() = 0;
};

struct IClassFactory : IUnknown
{
    virtual HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* pUnkOuter, REFIID riid,
                                                     void** ppvObject) = 0;
    virtual HRESULT STDMETHODCALLTYPE LockServer(BOOL fLock) = 0;
};

struct ISupportErrorInfo : IUnknown
{
    virtual HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID riid) = 0;
};

struct ITypeInfo; // never implemented here; type information is Windows only
struct VARIANT;

struct DISPPARAMS
{
    VARIANT* rgvarg;           // last argument first
    DISPID* rgdispidNamedArgs; // dispids of the named arguments, which come first in rgvarg
    UINT cArgs;
    UINT cNamedArgs;
};

struct EXCEPINFO
{
    WORD wCode;
    WORD wReserved;
    BSTR bstrSource;
    BSTR bstrDescription;
    BSTR bstrHelpFile;
    DWORD dwHelpContext;
    PVOID pvReserved;
    HRESULT (*pfnDeferredFillIn)(EXCEPINFO*);
    SCODE scode;
};

inline constexpr WORD DISPATCH_METHOD = 0x1;
inline constexpr WORD DISPATCH_PROPERTYGET = 0x2;
inline constexpr WORD DISPATCH_PROPERTYPUT = 0x4;
inline constexpr WORD DISPATCH_PROPERTYPUTREF = 0x8;
inline constexpr DISPID DISPID_UNKNOWN = -1;
inline constexpr DISPID DISPID_VALUE = 0;
inline constexpr DISPID DISPID_PROPERTYPUT = -3;

struct IDispatch : IUnknown
{
    virtual HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* pctinfo) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT iTInfo, LCID lcid, ITypeInfo** ppTInfo) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID riid, LPOLESTR* rgszNames, UINT cNames,
                                                    LCID lcid, DISPID* rgDispId) = 0;
    virtual HRESULT STDMETHODCALLTYPE Invoke(DISPID dispIdMember, REFIID riid, LCID lcid,
                                             WORD wFlags, DISPPARAMS* pDispParams,
                                             VARIANT* pVarResult, EXCEPINFO* pExcepInfo,
                                             UINT* puArgErr) = 0;
};

// ---- values -----------------------------------------------------------------

enum VARENUM : VARTYPE
{
    VT_EMPTY = 0,
    VT_NULL = 1,
    VT_I2 = 2,
    VT_I4 = 3,
    VT_R4 = 4,
    VT_R8 = 5,
    VT_CY = 6,
    VT_DATE = 7,
    VT_BSTR = 8,
    VT_DISPATCH = 9,
    VT_ERROR = 10,
    VT_BOOL = 11,
    VT_VARIANT = 12,
    VT_UNKNOWN = 13,
    VT_I1 = 16,
    VT_UI1 = 17,
    VT_UI2 = 18,
    VT_UI4 = 19,
    VT_I8 = 20,
    VT_UI8 = 21,
    VT_INT = 22,
    VT_UINT = 23,
    VT_ARRAY = 0x2000,
    VT_BYREF = 0x4000,
    VT_TYPEMASK = 0xFFF,
};

struct SAFEARRAYBOUND
{
    ULONG cElements;
    LONG lLbound;
};

inline constexpr USHORT FADF_BSTR = 0x0100;
inline constexpr USHORT FADF_UNKNOWN = 0x0200;
inline constexpr USHORT FADF_DISPATCH = 0x0400;
inline constexpr USHORT FADF_VARIANT = 0x0800;
inline constexpr USHORT FADF_HAVEVARTYPE = 0x0080;

// Elements lie with the leftmost index running fastest; rgsabound holds the
// dimensions in reverse, the rightmost first.
struct SAFEARRAY
{
    USHORT cDims;
    USHORT fFeatures;
    ULONG cbElements;
    ULONG cLocks;
    PVOID pvData;
    SAFEARRAYBOUND rgsabound[1];
};
static_assert(offsetof(SAFEARRAY, pvData) == 16 && offsetof(SAFEARRAY, rgsabound) == 24);

struct VARIANT_RECORD
{
    PVOID pvRecord;
    PVOID pRecInfo;
};

struct VARIANT
{
    VARTYPE vt;
    WORD wReserved1;
    WORD wReserved2;
    WORD wReserved3;
    union {
        LONGLONG llVal;
        LONG lVal;
        BYTE bVal;
        SHORT iVal;
        FLOAT fltVal;
        DOUBLE dblVal;
        VARIANT_BOOL boolVal;
        SCODE scode;
        CY cyVal;
        DATE date;
        BSTR bstrVal;
        IUnknown* punkVal;
        IDispatch* pdispVal;
        SAFEARRAY* parray;
        BYTE* pbVal;
        SHORT* piVal;
        LONG* plVal;
        LONGLONG* pllVal;
        FLOAT* pfltVal;
        DOUBLE* pdblVal;
        VARIANT_BOOL* pboolVal;
        SCODE* pscode;
        CY* pcyVal;
        DATE* pdate;
        BSTR* pbstrVal;
        IUnknown** ppunkVal;
        IDispatch** ppdispVal;
        SAFEARRAY** pparray;
        VARIANT* pvarVal;
        PVOID byref;
        signed char cVal;
        USHORT uiVal;
        ULONG ulVal;
        ULONGLONG ullVal;
        INT intVal;
        UINT uintVal;
        signed char* pcVal;
        USHORT* puiVal;
        ULONG* pulVal;
        ULONGLONG* pullVal;
        INT* pintVal;
        UINT* puintVal;
        VARIANT_RECORD record; // makes the value 24 bytes, as published
    };
};
static_assert(sizeof(VARIANT) == 24 && offsetof(VARIANT, llVal) == 8);

using VARIANTARG = VARIANT;

inline constexpr USHORT VARIANT_NOVALUEPROP = 0x01;
inline constexpr USHORT VARIANT_ALPHABOOL = 0x02;

inline constexpr LCID LOCALE_SYSTEM_DEFAULT = 0x0800;
inline constexpr LCID LOCALE_USER_DEFAULT = 0x0400;
inline constexpr LCID LOCALE_INVARIANT = 0x007F;

inline constexpr HRESULT VARCMP_LT = 0;
inline constexpr HRESULT VARCMP_EQ = 1;
inline constexpr HRESULT VARCMP_GT = 2;
inline constexpr HRESULT VARCMP_NULL = 3;

inline constexpr DWORD CLSCTX_INPROC_SERVER = 0x1;

// ---- calls ------------------------------------------------------------------

// In the library these calls have names that begin with its own, so that it takes none of those
// that a program may have: SysAllocString is exported as TabulexSysAllocString. Sources don't see
// it; whoever looks an entry up by its name does.
#define TABULEX_EXPORTED(function) __asm__("Tabulex" #function)

extern "C" {

TABULEX_API BSTR SysAllocString(const OLECHAR* text) TABULEX_EXPORTED(SysAllocString);
TABULEX_API BSTR SysAllocStringLen(const OLECHAR* text, UINT units)
    TABULEX_EXPORTED(SysAllocStringLen);
TABULEX_API BSTR SysAllocStringByteLen(const char* bytes, UINT count)
    TABULEX_EXPORTED(SysAllocStringByteLen);
TABULEX_API INT SysReAllocStringLen(BSTR* pText, const OLECHAR* text, UINT units)
    TABULEX_EXPORTED(SysReAllocStringLen);
TABULEX_API void SysFreeString(BSTR text) TABULEX_EXPORTED(SysFreeString);
TABULEX_API UINT SysStringLen(BSTR text) TABULEX_EXPORTED(SysStringLen);
TABULEX_API UINT SysStringByteLen(BSTR text) TABULEX_EXPORTED(SysStringByteLen);

TABULEX_API void VariantInit(VARIANT* value) TABULEX_EXPORTED(VariantInit);
TABULEX_API HRESULT VariantClear(VARIANT* value) TABULEX_EXPORTED(VariantClear);
TABULEX_API HRESULT VariantCopy(VARIANT* to, const VARIANT* from) TABULEX_EXPORTED(VariantCopy);
TABULEX_API HRESULT VariantCopyInd(VARIANT* to, const VARIANT* from)
    TABULEX_EXPORTED(VariantCopyInd);
TABULEX_API HRESULT VariantChangeType(VARIANT* to, const VARIANT* from, USHORT flags, VARTYPE vt)
    TABULEX_EXPORTED(VariantChangeType);
TABULEX_API HRESULT VariantChangeTypeEx(VARIANT* to, const VARIANT* from, LCID locale, USHORT flags,
                                        VARTYPE vt) TABULEX_EXPORTED(VariantChangeTypeEx);
TABULEX_API HRESULT VarBstrCmp(BSTR left, BSTR right, LCID locale, ULONG flags)
    TABULEX_EXPORTED(VarBstrCmp);
TABULEX_API HRESULT VarMonthName(INT month, INT abbreviate, ULONG flags, BSTR* name)
    TABULEX_EXPORTED(VarMonthName);

TABULEX_API SAFEARRAY* SafeArrayCreate(VARTYPE vt, UINT dimensions, SAFEARRAYBOUND* bounds)
    TABULEX_EXPORTED(SafeArrayCreate);
TABULEX_API SAFEARRAY* SafeArrayCreateVector(VARTYPE vt, LONG lowerBound, ULONG count)
    TABULEX_EXPORTED(SafeArrayCreateVector);
TABULEX_API HRESULT SafeArrayDestroy(SAFEARRAY* array) TABULEX_EXPORTED(SafeArrayDestroy);
TABULEX_API HRESULT SafeArrayCopy(SAFEARRAY* array, SAFEARRAY** copy)
    TABULEX_EXPORTED(SafeArrayCopy);
TABULEX_API HRESULT SafeArrayRedim(SAFEARRAY* array, SAFEARRAYBOUND* newRightmostBound)
    TABULEX_EXPORTED(SafeArrayRedim);
TABULEX_API UINT SafeArrayGetDim(SAFEARRAY* array) TABULEX_EXPORTED(SafeArrayGetDim);
TABULEX_API UINT SafeArrayGetElemsize(SAFEARRAY* array) TABULEX_EXPORTED(SafeArrayGetElemsize);
TABULEX_API HRESULT SafeArrayGetVartype(SAFEARRAY* array, VARTYPE* vt)
    TABULEX_EXPORTED(SafeArrayGetVartype);
TABULEX_API HRESULT SafeArrayGetLBound(SAFEARRAY* array, UINT dimension, LONG* bound)
    TABULEX_EXPORTED(SafeArrayGetLBound);
TABULEX_API HRESULT SafeArrayGetUBound(SAFEARRAY* array, UINT dimension, LONG* bound)
    TABULEX_EXPORTED(SafeArrayGetUBound);
TABULEX_API HRESULT SafeArrayGetElement(SAFEARRAY* array, LONG* indices, void* value)
    TABULEX_EXPORTED(SafeArrayGetElement);
TABULEX_API HRESULT SafeArrayPutElement(SAFEARRAY* array, LONG* indices, void* value)
    TABULEX_EXPORTED(SafeArrayPutElement);
TABULEX_API HRESULT SafeArrayPtrOfIndex(SAFEARRAY* array, LONG* indices, void** element)
    TABULEX_EXPORTED(SafeArrayPtrOfIndex);
TABULEX_API HRESULT SafeArrayLock(SAFEARRAY* array) TABULEX_EXPORTED(SafeArrayLock);
TABULEX_API HRESULT SafeArrayUnlock(SAFEARRAY* array) TABULEX_EXPORTED(SafeArrayUnlock);
TABULEX_API HRESULT SafeArrayAccessData(SAFEARRAY* array, void** data)
    TABULEX_EXPORTED(SafeArrayAccessData);
TABULEX_API HRESULT SafeArrayUnaccessData(SAFEARRAY* array) TABULEX_EXPORTED(SafeArrayUnaccessData);

TABULEX_API INT SystemTimeToVariantTime(SYSTEMTIME* time, DATE* date)
    TABULEX_EXPORTED(SystemTimeToVariantTime);
TABULEX_API INT VariantTimeToSystemTime(DATE date, SYSTEMTIME* time)
    TABULEX_EXPORTED(VariantTimeToSystemTime);

// Creates one of this library's classes by its identifier; REGDB_E_CLASSNOTREG
// for any other class. Aggregation isn't offered.
TABULEX_API HRESULT CoCreateInstance(REFCLSID rclsid, IUnknown* pUnkOuter, DWORD dwClsContext,
                                     REFIID riid, void** ppv) TABULEX_EXPORTED(CoCreateInstance);
}
