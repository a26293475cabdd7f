// The services of the front end, called by chance.
#include "com/safe_array.h"
#include "tests/random/world.h"

#include <algorithm>

namespace chance {

namespace {

constexpr std::size_t tablesKept = 5;

com::variant copyOfTable(const VARIANT& table) {
    return table.vt == (VT_ARRAY | VT_BSTR) ? com::variant::copyOf(table) : com::variant{};
}

// Lists of names are lists of texts, or nothing.
std::string badNames(HRESULT code, const VARIANT& names) {
    const bool isNothing = names.vt == VT_EMPTY;
    if (FAILED(code)) {
        return isNothing ? "" : "a failing service changed its output";
    }
    return isNothing || (names.vt == (VT_ARRAY | VT_BSTR) && SafeArrayGetDim(names.parray) == 1)
               ? ""
               : "the names are of type " + std::to_string(names.vt);
}

} // namespace

HRESULT World::create(IUnknown* workbook, const Kind& kind, const std::wstring& name) {
    const com::unique_bstr managerName = com::makeBstr(kind.name);
    const com::unique_bstr packageName = com::makeBstr(kind.packageName);
    const com::unique_bstr ppName = com::makeBstr(name);
    return addIn_->CreateWorkbookPP(workbook, managerName.get(), kind.clsid, kind.type, packageName.get(),
                                    ppName.get());
}

HRESULT World::save(IUnknown* workbook) {
    com::variant table;
    const HRESULT code = addIn_->Persist(workbook, &table);
    digest_.add(shownText(table));
    if (code == S_OK) {
        if (saved_.size() == tablesKept) {
            saved_.erase(saved_.begin());
        }
        saved_.push_back(std::move(table));
    }
    return code;
}

// Damage that a stranger's workbook may have.
void World::damage(com::variant& table) {
    if (table.vt != (VT_ARRAY | VT_BSTR) || table.parray == nullptr) {
        return;
    }
    constexpr std::size_t columnOfClass = 3;
    const com::array_lock<BSTR> lock{table.parray};
    const std::span<BSTR> cells = lock.elements();
    const std::size_t rows = table.parray->rgsabound[1].cElements; // the last dimension comes first
    for (std::size_t i = dice_.below(3); i > 0 && !cells.empty(); --i) {
        const std::size_t position = dice_.below(cells.size());
        if (reach_ != Reach::everything && position / rows == columnOfClass) {
            continue;
        }
        BSTR& cell = cells[position];
        const com::unique_bstr old{cell};
        std::wstring words{com::viewOf(old)};
        if (words.empty() || dice_.percent(30)) {
            words = anyText(dice_);
        } else {
            words[dice_.below(words.size())] = static_cast<wchar_t>(dice_.below(0x80));
        }
        cell = com::makeBstr(words).release();
    }
}

HRESULT World::restore(IUnknown* workbook) {
    if (saved_.empty() || dice_.percent(5)) {
        const Value table = passed(dice_, anyArray(dice_, 6));
        return addIn_->Depersist(workbook, table.value);
    }
    com::variant table = copyOfTable(dice_.of(saved_));
    if (dice_.percent(50)) {
        damage(table);
    }
    return addIn_->Depersist(workbook, table);
}

std::string World::lists(IUnknown* workbook, BSTR name) {
    using List = HRESULT (STDMETHODCALLTYPE IQuorvaneVSTOServices::*)(IUnknown*, BSTR, VARIANT*);
    constexpr std::array<List, 7> all = {&IQuorvaneVSTOServices::CompoundNames,
                                         &IQuorvaneVSTOServices::CompoundConstantNames,
                                         &IQuorvaneVSTOServices::TemperatureDependentPropertyNames,
                                         &IQuorvaneVSTOServices::PhaseNames,
                                         &IQuorvaneVSTOServices::SinglePhasePropertyNames,
                                         &IQuorvaneVSTOServices::TwoPhasePropertyNames,
                                         &IQuorvaneVSTOServices::PhaseEquilibriumConditionNames};
    const List list = dice_.of(all);
    com::variant names;
    const HRESULT code = (addIn_.get()->*list)(workbook, name, &names);
    digest_.add(shownText(names));
    const std::string wrong = badNames(code, names);
    return wrong.empty() ? judge_.complaint(code, ownFailure()) : wrong;
}

std::string World::service() {
    ++tally_.services;
    SetErrorInfo(0, nullptr);
    const Kind& kind = packages_.kinds()[dice_.percent(90) ? dice_.below(packages_.kinds().size() - 1)
                                                           : packages_.kinds().size() - 1];
    const com::unique_bstr name =
        com::makeBstr(dice_.percent(95) ? nameOfPackage(dice_, kind) : anyText(dice_));
    const com::unique_bstr property =
        com::makeBstr(dice_.percent(80) ? kind.vocabulary.singlePhase.front() : anyText(dice_));
    const com::unique_bstr phase =
        com::makeBstr(dice_.percent(80) ? dice_.of(kind.vocabulary.phases) : anyText(dice_));
    IUnknown* const workbook = someWorkbook();
    HRESULT code = S_OK;
    VARIANT_BOOL truth = VARIANT_FALSE;
    com::unique_bstr words;
    com::variant value;
    switch (dice_.below(16)) {
    case 0:
    case 1:
    case 2:
    case 3:
        code = create(workbook, kind, std::wstring{com::viewOf(name)});
        break;
    case 4:
        code = addIn_->DeleteWorkbookPP(workbook, name.get());
        break;
    case 5:
        code = dice_.percent(30) ? addIn_->CloseWorkbook(workbook) : S_OK;
        break;
    case 6:
        code = dice_.percent(30) ? save(workbook) : S_OK;
        break;
    case 7:
        code = restore(workbook);
        break;
    case 8:
        code = addIn_->PackageNames(workbook, &value);
        break;
    case 9:
        // Only packages without a window can be edited here.
        code = kind.script ? addIn_->EditWorkbookPP(workbook, name.get(), dice_.percent(5) ? nullptr : &truth)
                           : S_OK;
        break;
    case 10: {
        EnumPhaseType type = UnknownPhase;
        code = addIn_->GetPhaseType(workbook, name.get(), phase.get(), &type);
        break;
    }
    case 11:
        code = addIn_->CheckSinglePhaseProperty(workbook, name.get(), property.get(), phase.get(), &truth);
        break;
    case 12: {
        const com::unique_bstr other = com::makeBstr(dice_.of(kind.vocabulary.phases));
        code = addIn_->CheckTwoPhaseProperty(workbook, name.get(), property.get(), phase.get(), other.get(),
                                             &truth);
        break;
    }
    case 13: {
        const com::variant range = dice_.percent(80) ? anyRange(dice_, 3) : com::variant{};
        code = addIn_->ValueFromRange(range.vt == VT_DISPATCH ? range.punkVal : workbook, &value);
        break;
    }
    case 14:
        code = reach_ != Reach::everything ? S_OK : addIn_->GetPackageInfo(name.get(), words.put());
        break;
    default:
        return lists(workbook, name.get());
    }
    digest_.add(&code, sizeof code);
    digest_.add(&truth, sizeof truth);
    digest_.add(shownText(value));
    digest_.add(scripted::narrow(com::viewOf(words)));
    return judge_.complaint(code, ownFailure());
}

} // namespace chance
