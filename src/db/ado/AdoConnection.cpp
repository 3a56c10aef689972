#include "AdoConnection.h"

#include <oleauto.h>

namespace {

constexpr LONG noTimeout = 0;

template<typename Interface>
ComPtr<Interface> create(const wchar_t* program, const IID& identifier) {
    CLSID type;
    requireSuccess(CLSIDFromProgID(program, &type));
    ComPtr<Interface> object;
    requireSuccess(CoCreateInstance(type, nullptr, CLSCTX_INPROC_SERVER, identifier,
                                    reinterpret_cast<void**>(object.out())));
    return object;
}

std::wstring systemText(HRESULT result) {
    wchar_t* text = nullptr;
    const DWORD length = FormatMessageW(
        FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
        nullptr, DWORD(result), 0, reinterpret_cast<wchar_t*>(&text), 0, nullptr);
    std::wstring message = length > 0 ? std::wstring(text, length) : L"COM error";
    LocalFree(text);
    while (!message.empty() && (message.back() == L'\n' || message.back() == L'\r'))
        message.pop_back();
    return message;
}

AdoFailure failureOf(HRESULT result) {
    AdoFailure failure;
    failure.result = result;
    ComPtr<IErrorInfo> info;
    if (GetErrorInfo(0, info.out()) == S_OK && info) {
        Bstr source, description;
        info->GetSource(source.out());
        info->GetDescription(description.out());
        failure.source = source.text();
        failure.description = description.text();
    }
    if (failure.description.empty())
        failure.description = systemText(result);
    return failure;
}

// The provider's own error, which says more than COM's; false when there is none.
bool readProviderError(ado::Connection& connection, AdoFailure& failure) {
    ComPtr<ado::Errors> errors;
    LONG count = 0;
    if (FAILED(connection.get_Errors(errors.out())) || !errors ||
        FAILED(errors->get_Count(&count)) || count == 0)
        return false;
    ComPtr<ado::ErrorObject> error;
    const Variant first(LONG(0));
    if (FAILED(errors->get_Item(first.get(), error.out())) || !error)
        return false;
    Bstr source, description;
    error->get_Source(source.out());
    error->get_Description(description.out());
    error->get_NativeError(&failure.native);
    failure.source = source.text();
    failure.description = description.text();
    return true;
}

} // namespace

void requireSuccess(HRESULT result) {
    if (FAILED(result))
        throw failureOf(result);
}

AdoConnection::AdoConnection()
    : m_connection(create<ado::Connection>(L"ADODB.Connection", ado::iidConnection)) {}

AdoConnection::~AdoConnection() {
    if (isOpen())
        m_connection->Close();
}

void AdoConnection::require(HRESULT result) {
    if (SUCCEEDED(result))
        return;
    AdoFailure failure = failureOf(result);
    readProviderError(*m_connection.get(), failure);
    throw failure;
}

void AdoConnection::open(const std::wstring& connectionString) {
    require(m_connection->put_ConnectionString(Bstr(connectionString).get()));
    const Bstr empty(L"");
    require(m_connection->Open(empty.get(), empty.get(), empty.get(), ado::unspecified));
}

bool AdoConnection::isOpen() const {
    LONG state = 0;
    return SUCCEEDED(m_connection->get_State(&state)) && (state & ado::stateOpen) != 0;
}

AdoRecordset AdoConnection::execute(const std::wstring& sql, LONG mostRows) {
    auto command = create<ado::Command>(L"ADODB.Command", ado::iidCommand);
    auto recordset = create<ado::Recordset>(L"ADODB.Recordset", ado::iidRecordset);
    require(recordset->put_CursorLocation(ado::useClient));
    require(recordset->put_CursorType(ado::openForwardOnly));
    require(command->putref_ActiveConnection(m_connection.get()));
    require(command->put_CommandType(ado::commandText));
    require(command->put_CommandText(Bstr(sql).get()));
    command->put_CommandTimeout(noTimeout);
    if (mostRows > 0)
        require(recordset->put_MaxRecords(mostRows));
    const Variant source(static_cast<IDispatch*>(command.get()));
    Variant connection;
    Variant::setMissing(connection);
    require(recordset->Open(source.get(), connection.get(), ado::unspecified, ado::unspecified,
                            ado::unspecified));
    return AdoRecordset(std::move(recordset));
}

void AdoConnection::cancel() noexcept {
    m_connection->Cancel();
}

AdoRecordset::AdoRecordset(ComPtr<ado::Recordset> recordset)
    : m_recordset(std::move(recordset)) {}

AdoRecordset::~AdoRecordset() {
    if (m_recordset && isOpen())
        m_recordset->Close();
}

bool AdoRecordset::isOpen() const {
    LONG state = 0;
    return SUCCEEDED(m_recordset->get_State(&state)) && (state & ado::stateOpen) != 0;
}

std::vector<AdoField> AdoRecordset::fields() const {
    std::vector<AdoField> described;
    if (!isOpen())
        return described; // a statement without rows leaves it closed
    ComPtr<ado::Fields> fields;
    LONG count = 0;
    requireSuccess(m_recordset->get_Fields(fields.out()));
    requireSuccess(fields->get_Count(&count));
    for (LONG i = 0; i < count; ++i) {
        ComPtr<ado::Field> field;
        Bstr name;
        LONG type = 0;
        const Variant index(i);
        requireSuccess(fields->get_Item(index.get(), field.out()));
        requireSuccess(field->get_Name(name.out()));
        requireSuccess(field->get_Type(&type));
        described.push_back({name.text(), type});
    }
    return described;
}

bool AdoRecordset::atEnd() const {
    VARIANT_BOOL end = VARIANT_TRUE;
    return !isOpen() || FAILED(m_recordset->get_EOF(&end)) || end != VARIANT_FALSE;
}

void AdoRecordset::getRows(LONG most, Variant& array) {
    Variant start, fields;
    Variant::setMissing(start);
    Variant::setMissing(fields);
    requireSuccess(m_recordset->GetRows(most, start.get(), fields.get(), array.out()));
}
