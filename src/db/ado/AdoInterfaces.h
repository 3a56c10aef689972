#pragma once

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <oaidl.h>

// The interfaces of ActiveX Data Objects that the program uses, as their type library declares
// them: the order of the members is the binary contract. Members that are never called are there
// for their places and take no arguments. The identifiers are those of ADO 2.0, which every later
// ADO answers too.

namespace ado {

struct Connection;
struct Recordset;
struct Fields;
struct Field;
struct Errors;
struct ErrorObject;

constexpr IID iidConnection{
    0x00000550, 0x0000, 0x0010, {0x80, 0x00, 0x00, 0xAA, 0x00, 0x6D, 0x2E, 0xA4}};
constexpr IID iidCommand{
    0xB08400BD, 0xF9D1, 0x4D02, {0xB8, 0x56, 0x71, 0xD5, 0xDB, 0xA1, 0x23, 0xE9}};
constexpr IID iidRecordset{
    0x00000556, 0x0000, 0x0010, {0x80, 0x00, 0x00, 0xAA, 0x00, 0x6D, 0x2E, 0xA4}};

// Values of the properties, by their names in the type library without the prefix.
constexpr LONG useClient = 3;
constexpr LONG openForwardOnly = 0;
constexpr LONG commandText = 1;
constexpr LONG unspecified = -1;
constexpr LONG stateOpen = 1;

// What stands for an argument that is left out.
constexpr LONG missingArgument = LONG(0x80020004);

#define ADO_CALL virtual HRESULT STDMETHODCALLTYPE
#define ADO_UNUSED(name) ADO_CALL name() = 0

struct Object : IDispatch {
    ADO_UNUSED(get_Properties);
};

struct Connection : Object {
    ADO_CALL get_ConnectionString(BSTR* text) = 0;
    ADO_CALL put_ConnectionString(BSTR text) = 0;
    ADO_UNUSED(get_CommandTimeout);
    ADO_UNUSED(put_CommandTimeout);
    ADO_CALL get_ConnectionTimeout(LONG* seconds) = 0;
    ADO_CALL put_ConnectionTimeout(LONG seconds) = 0;
    ADO_UNUSED(get_Version);
    ADO_CALL Close() = 0;
    ADO_UNUSED(Execute);
    ADO_UNUSED(BeginTrans);
    ADO_UNUSED(CommitTrans);
    ADO_UNUSED(RollbackTrans);
    ADO_CALL Open(BSTR text, BSTR user, BSTR password, LONG options) = 0;
    ADO_CALL get_Errors(Errors** errors) = 0;
    ADO_UNUSED(get_DefaultDatabase);
    ADO_UNUSED(put_DefaultDatabase);
    ADO_UNUSED(get_IsolationLevel);
    ADO_UNUSED(put_IsolationLevel);
    ADO_UNUSED(get_Attributes);
    ADO_UNUSED(put_Attributes);
    ADO_UNUSED(get_CursorLocation);
    ADO_UNUSED(put_CursorLocation);
    ADO_UNUSED(get_Mode);
    ADO_UNUSED(put_Mode);
    ADO_UNUSED(get_Provider);
    ADO_UNUSED(put_Provider);
    ADO_CALL get_State(LONG* state) = 0;
    ADO_UNUSED(OpenSchema);
    ADO_CALL Cancel() = 0;
};

struct Command : Object {
    ADO_UNUSED(get_ActiveConnection);
    ADO_CALL putref_ActiveConnection(Connection* connection) = 0;
    ADO_UNUSED(put_ActiveConnection);
    ADO_UNUSED(get_CommandText);
    ADO_CALL put_CommandText(BSTR text) = 0;
    ADO_UNUSED(get_CommandTimeout);
    ADO_CALL put_CommandTimeout(LONG seconds) = 0;
    ADO_UNUSED(get_Prepared);
    ADO_UNUSED(put_Prepared);
    ADO_UNUSED(Execute);
    ADO_UNUSED(CreateParameter);
    ADO_UNUSED(get_Parameters);
    ADO_CALL put_CommandType(LONG type) = 0;
};

struct Recordset : Object {
    ADO_UNUSED(get_AbsolutePosition);
    ADO_UNUSED(put_AbsolutePosition);
    ADO_UNUSED(putref_ActiveConnection);
    ADO_UNUSED(put_ActiveConnection);
    ADO_UNUSED(get_ActiveConnection);
    ADO_UNUSED(get_BOF);
    ADO_UNUSED(get_Bookmark);
    ADO_UNUSED(put_Bookmark);
    ADO_UNUSED(get_CacheSize);
    ADO_UNUSED(put_CacheSize);
    ADO_UNUSED(get_CursorType);
    ADO_CALL put_CursorType(LONG type) = 0;
    ADO_CALL get_EOF(VARIANT_BOOL* end) = 0;
    ADO_CALL get_Fields(Fields** fields) = 0;
    ADO_UNUSED(get_LockType);
    ADO_UNUSED(put_LockType);
    ADO_UNUSED(get_MaxRecords);
    ADO_CALL put_MaxRecords(LONG most) = 0;
    ADO_UNUSED(get_RecordCount);
    ADO_UNUSED(putref_Source);
    ADO_UNUSED(put_Source);
    ADO_UNUSED(get_Source);
    ADO_UNUSED(AddNew);
    ADO_UNUSED(CancelUpdate);
    ADO_CALL Close() = 0;
    ADO_UNUSED(Delete);
    ADO_CALL GetRows(LONG rows, VARIANT start, VARIANT fields, VARIANT* array) = 0;
    ADO_UNUSED(Move);
    ADO_UNUSED(MoveNext);
    ADO_UNUSED(MovePrevious);
    ADO_UNUSED(MoveFirst);
    ADO_UNUSED(MoveLast);
    ADO_CALL Open(VARIANT source, VARIANT connection, LONG cursor, LONG lock, LONG options) = 0;
    ADO_UNUSED(Requery);
    ADO_UNUSED(xResync);
    ADO_UNUSED(Update);
    ADO_UNUSED(get_AbsolutePage);
    ADO_UNUSED(put_AbsolutePage);
    ADO_UNUSED(get_EditMode);
    ADO_UNUSED(get_Filter);
    ADO_UNUSED(put_Filter);
    ADO_UNUSED(get_PageCount);
    ADO_UNUSED(get_PageSize);
    ADO_UNUSED(put_PageSize);
    ADO_UNUSED(get_Sort);
    ADO_UNUSED(put_Sort);
    ADO_UNUSED(get_Status);
    ADO_CALL get_State(LONG* state) = 0;
    ADO_UNUSED(xClone);
    ADO_UNUSED(UpdateBatch);
    ADO_UNUSED(CancelBatch);
    ADO_UNUSED(get_CursorLocation);
    ADO_CALL put_CursorLocation(LONG location) = 0;
};

struct Collection : IDispatch {
    ADO_CALL get_Count(LONG* count) = 0;
    ADO_UNUSED(NewEnum);
    ADO_UNUSED(Refresh);
};

struct Fields : Collection {
    ADO_CALL get_Item(VARIANT index, Field** field) = 0;
};

struct Field : Object {
    ADO_UNUSED(get_ActualSize);
    ADO_UNUSED(get_Attributes);
    ADO_UNUSED(get_DefinedSize);
    ADO_CALL get_Name(BSTR* name) = 0;
    ADO_CALL get_Type(LONG* type) = 0;
};

struct Errors : Collection {
    ADO_CALL get_Item(VARIANT index, ErrorObject** error) = 0;
    ADO_CALL Clear() = 0;
};

struct ErrorObject : IDispatch {
    ADO_CALL get_Number(LONG* number) = 0;
    ADO_CALL get_Source(BSTR* source) = 0;
    ADO_CALL get_Description(BSTR* text) = 0;
    ADO_UNUSED(get_HelpFile);
    ADO_UNUSED(get_HelpContext);
    ADO_CALL get_SQLState(BSTR* state) = 0;
    ADO_CALL get_NativeError(LONG* code) = 0;
};

#undef ADO_CALL
#undef ADO_UNUSED

} // namespace ado
