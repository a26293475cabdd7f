#include "sheet/cli/add_in.h"

#include "com/safe_array.h"
#include "sheet/cli/cell_values.h"

#include <algorithm>

namespace sheet::cli {

namespace {

constexpr const wchar_t* addInProgId = L"Quorvane.Excel";

struct ErrorInformation {
    com::unique_bstr source;
    com::unique_bstr description;
};

void forgetErrors() noexcept { SetErrorInfo(0, nullptr); }

// What the last call left; taking it also clears it.
ErrorInformation takeErrors() noexcept {
    com::com_ptr<IErrorInfo> info;
    ErrorInformation result;
    if (GetErrorInfo(0, info.put()) == S_OK && info) {
        info->GetSource(result.source.put());
        info->GetDescription(result.description.put());
    }
    return result;
}

std::string reasonFor(HRESULT code) {
    const ErrorInformation error = takeErrors();
    return error.description ? toUtf8(com::viewOf(error.description)) : systemText(code);
}

// The add-in's own words after a call that succeeded; packages may leave theirs there without a meaning.
std::optional<std::string> messageLeft() {
    const ErrorInformation error = takeErrors();
    return com::viewOf(error.source) == addInProgId ? std::optional{toUtf8(com::viewOf(error.description))}
                                                    : std::nullopt;
}

// A table of one row, as the front end would find it in the workbook.
com::variant tableOf(const std::vector<std::string>& row) {
    com::unique_safearray array = com::makeMatrix(VT_BSTR, 1, row.size());
    {
        const com::array_lock<BSTR> lock{array.get()};
        std::ranges::transform(row, lock.elements().begin(), [](const std::string& cell) {
            return cell.empty() ? nullptr : com::makeBstr(toWide(cell)).release();
        });
    }
    return com::variant::array(std::move(array), VT_BSTR);
}

std::vector<std::string> textsIn(const com::variant& list) {
    std::vector<std::string> texts;
    if (list.vt == (VT_ARRAY | VT_BSTR)) {
        const com::array_lock<BSTR> lock{list.parray};
        for (const BSTR text : lock.elements()) {
            texts.push_back(toUtf8(com::viewOf(text)));
        }
    }
    return texts;
}

// A property that the add-in does not know counts as one value, which is not per mole.
checking::ListedProperty describedProperty(IQuorvaneVSTOServices& services, const std::string& name) {
    const com::unique_bstr property = com::makeBstr(toWide(name));
    com::unique_bstr unitMole;
    com::unique_bstr unitMass;
    EnumPropertyType type{};
    EnumDerivativeType derivative{};
    LONG conversion = 0;
    LONG rank = 0;
    VARIANT_BOOL extensive = VARIANT_FALSE;
    VARIANT_BOOL overall = VARIANT_FALSE;
    const HRESULT code = services.GetPropInfo(property.get(), unitMole.put(), unitMass.put(), &type,
                                              &derivative, &conversion, &rank, &extensive, &overall);
    return SUCCEEDED(code)
               ? checking::ListedProperty{name, static_cast<int>(rank), extensive != VARIANT_FALSE}
               : checking::ListedProperty{name};
}

formula::CsvTable rowsOf(const com::variant& table) {
    if (table.vt != (VT_ARRAY | VT_BSTR) || SafeArrayGetDim(table.parray) != 2) {
        return {};
    }
    const com::array_lock<BSTR> lock{table.parray};
    const std::span<BSTR> cells = lock.elements();
    LONG lower = 0;
    LONG upper = -1;
    SafeArrayGetLBound(table.parray, 1, &lower);
    SafeArrayGetUBound(table.parray, 1, &upper);
    formula::CsvTable rows(static_cast<std::size_t>(upper - lower + 1));
    for (std::size_t i = 0; i < cells.size(); ++i) { // column by column
        rows[i % rows.size()].push_back(toUtf8(com::viewOf(cells[i])));
    }
    return rows;
}

com::variant toVariant(const formula::Argument& argument, const formula::Grid& grid) {
    struct Visitor {
        const formula::Grid& grid;
        com::variant operator()(formula::Omitted) const { return com::variant::missing(); }
        com::variant operator()(double number) const { return com::variant{number}; }
        com::variant operator()(const std::string& text) const { return com::variant{toWide(text)}; }
        com::variant operator()(bool truth) const { return com::variant{truth}; }
        com::variant operator()(const formula::Block& block) const {
            return excel::objectOrNothing(rangeOf(grid, block)->dispatch());
        }
    };
    return std::visit(Visitor{grid}, argument);
}

} // namespace

AddIn::AddIn(const std::string& workbookName) : workbook_{com::make<excel::Workbook>(toWide(workbookName))} {
    application_->setActiveWorkbook(workbook_);
    application_->addIns().add(excel::frontEndName, frontEnd_);

    CLSID clsid{};
    HRESULT code = CLSIDFromProgID(addInProgId, &clsid);
    if (SUCCEEDED(code)) {
        code = CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, functions_.putVoid());
    }
    if (FAILED(code) || !functions_) {
        throw AddInError{"the add-in Quorvane.Excel cannot be created: " + systemText(code) +
                         "; register it by regsvr32 Quorvane.dll"};
    }
    com::com_ptr<_IDTExtensibility2> extension = functions_.tryAs<_IDTExtensibility2>();
    if (!extension) {
        throw AddInError{"the add-in Quorvane.Excel is not one that Excel could connect; register it again"};
    }
    forgetErrors();
    // An add-in for functions gets itself as the add-in's instance.
    code = extension->OnConnection(application_->dispatch(), ext_cm_Startup, functions_.get(), nullptr);
    if (FAILED(code)) {
        throw AddInError{"the add-in Quorvane.Excel does not connect: " + reasonFor(code)};
    }
    connection_.extension = std::move(extension);
    connection_.extension->OnStartupComplete(nullptr);
    if (frontEnd_->services() == nullptr) {
        throw AddInError{"the add-in Quorvane.Excel does not hand over its services; register it again"};
    }
}

AddIn::Connection::~Connection() {
    if (extension) {
        extension->OnBeginShutdown(nullptr);
        extension->OnDisconnection(ext_dm_HostShutdown, nullptr);
    }
    frontEnd_.letGo();
}

void AddIn::attach(const PackageOption& package, const Component& component) {
    const auto type = package.managed ? PropertyPackageManager11 : StandAlonePackage11;
    const com::unique_bstr manager = com::makeBstr(toWide(component.name));
    const com::unique_bstr managed = com::makeBstr(toWide(package.managed.value_or("")));
    const com::unique_bstr name = com::makeBstr(toWide(package.name));
    forgetErrors();
    const HRESULT code = frontEnd_->services()->CreateWorkbookPP(
        workbook_->dispatch(), manager.get(), component.clsid, type, managed.get(), name.get());
    if (FAILED(code)) {
        throw AddInError{"the package " + package.name + " cannot be attached: " + reasonFor(code)};
    }
}

std::optional<std::string> AddIn::restore(const std::vector<std::string>& row) {
    const com::variant table = tableOf(row);
    forgetErrors();
    const HRESULT code = frontEnd_->services()->Depersist(workbook_->dispatch(), table);
    if (FAILED(code)) {
        return reasonFor(code);
    }
    // A message that the add-in could only show to its user stays behind as error information.
    return messageLeft();
}

formula::CsvTable AddIn::savedPackages() {
    com::variant table;
    forgetErrors();
    const HRESULT code = frontEnd_->services()->Persist(workbook_->dispatch(), &table);
    const std::optional<std::string> problem = FAILED(code) ? reasonFor(code) : messageLeft();
    if (problem) {
        throw AddInError{"the packages cannot be saved: " + *problem};
    }
    return rowsOf(table);
}

std::vector<std::string> AddIn::packageNames() {
    com::variant list;
    frontEnd_->services()->PackageNames(workbook_->dispatch(), &list);
    std::vector<std::string> names = textsIn(list);
    std::ranges::sort(names);
    return names;
}

checking::Offer AddIn::offerOf(const std::string& name) {
    IQuorvaneVSTOServices* const services = frontEnd_->services();
    const com::unique_bstr package = com::makeBstr(toWide(name));
    using ListOf = HRESULT (STDMETHODCALLTYPE IQuorvaneVSTOServices::*)(IUnknown*, BSTR, VARIANT*);
    const auto listed = [&](ListOf list) {
        com::variant names;
        forgetErrors();
        const HRESULT code = (services->*list)(workbook_->dispatch(), package.get(), &names);
        if (FAILED(code)) {
            throw AddInError{"the package " + name + " does not tell what it has: " + reasonFor(code)};
        }
        return textsIn(names);
    };
    const auto described = [&](ListOf list) {
        std::vector<checking::ListedProperty> properties;
        for (const std::string& property : listed(list)) {
            properties.push_back(describedProperty(*services, property));
        }
        return properties;
    };
    checking::Offer offer;
    offer.singlePhase = described(&IQuorvaneVSTOServices::SinglePhasePropertyNames);
    offer.twoPhase = described(&IQuorvaneVSTOServices::TwoPhasePropertyNames);
    offer.temperatureDependent = described(&IQuorvaneVSTOServices::TemperatureDependentPropertyNames);
    offer.constants = listed(&IQuorvaneVSTOServices::CompoundConstantNames);
    offer.forPhases = [this, name](const std::string& property, const std::vector<std::string>& phases) {
        IQuorvaneVSTOServices* const asked = frontEnd_->services();
        IDispatch* const workbook = workbook_->dispatch();
        const com::unique_bstr packageName = com::makeBstr(toWide(name));
        const com::unique_bstr propertyName = com::makeBstr(toWide(property));
        const com::unique_bstr first = com::makeBstr(toWide(phases.front()));
        const com::unique_bstr second = com::makeBstr(toWide(phases.back()));
        VARIANT_BOOL supported = VARIANT_TRUE;
        const HRESULT code =
            phases.size() == 1 ? asked->CheckSinglePhaseProperty(workbook, packageName.get(),
                                                                 propertyName.get(), first.get(), &supported)
                               : asked->CheckTwoPhaseProperty(workbook, packageName.get(), propertyName.get(),
                                                              first.get(), second.get(), &supported);
        return FAILED(code) || supported != VARIANT_FALSE;
    };
    offer.isVapor = [this, name](const std::string& phase) {
        const com::unique_bstr packageName = com::makeBstr(toWide(name));
        const com::unique_bstr phaseName = com::makeBstr(toWide(phase));
        EnumPhaseType type = UnknownPhase;
        return SUCCEEDED(frontEnd_->services()->GetPhaseType(workbook_->dispatch(), packageName.get(),
                                                             phaseName.get(), &type)) &&
               type == VaporPhase;
    };
    return offer;
}

std::string AddIn::describe(const std::string& name) {
    const com::unique_bstr packageName = com::makeBstr(toWide(name));
    com::unique_bstr description;
    forgetErrors();
    const HRESULT code = frontEnd_->services()->GetPackageInfo(packageName.get(), description.put());
    if (FAILED(code)) {
        throw AddInError{"the package " + name + " cannot be described: " + reasonFor(code)};
    }
    std::string text = toUtf8(com::viewOf(description));
    std::erase(text, '\r');
    return text;
}

bool AddIn::hasFunction(const std::string& name) {
    if (identifiers_.contains(name)) {
        return true;
    }
    std::wstring wide = toWide(name);
    wchar_t* names[] = {wide.data()};
    DISPID id = DISPID_UNKNOWN;
    if (FAILED(functions_->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id))) {
        return false;
    }
    identifiers_.emplace(name, id);
    return true;
}

formula::Result AddIn::call(const formula::EnteredFormula& entered, const formula::Grid& grid) {
    std::vector<com::variant> arguments;
    for (const formula::Argument& argument : entered.formula.arguments) {
        arguments.push_back(toVariant(argument, grid));
    }
    // Automation counts arguments from the last; it only borrows these.
    std::vector<VARIANT> parameters{arguments.rbegin(), arguments.rend()};
    DISPPARAMS given{parameters.data(), nullptr, static_cast<UINT>(parameters.size()), 0};

    application_->setCaller(excel::Range::empty(entered.block.rows, entered.block.columns));
    forgetErrors();
    com::variant result;
    EXCEPINFO exception{};
    const HRESULT code =
        functions_->Invoke(identifiers_.at(entered.formula.function), IID_NULL, LOCALE_USER_DEFAULT,
                           DISPATCH_METHOD | DISPATCH_PROPERTYGET, &given, &result, &exception, nullptr);
    const com::unique_bstr source{exception.bstrSource};
    const com::unique_bstr description{exception.bstrDescription};
    const com::unique_bstr helpFile{exception.bstrHelpFile};
    application_->setCaller();
    if (FAILED(code)) {
        return {formula::Matrix::of(formula::CellError::value), true,
                description ? toUtf8(com::viewOf(description)) : reasonFor(code)};
    }
    // The function succeeds whatever happens; its failures differ from texts by the error information alone.
    const bool failed = result.vt == VT_ERROR || com::viewOf(takeErrors().source) == addInProgId;
    return {fromResult(result), failed, {}};
}

} // namespace sheet::cli
