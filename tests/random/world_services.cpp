// The services of the front end, called by chance.
#include "com/safe_array.h"
#include "tests/random/world.h"

#include <algorithm>

namespace chance {

namespace {

constexpr std::size_t tablesKept = 5;

using List = HRESULT (STDMETHODCALLTYPE IQuorvaneVSTOServices::*)(IUnknown*, BSTR, VARIANT*);
constexpr std::array<List, 7> allLists = {&IQuorvaneVSTOServices::CompoundNames,
                                          &IQuorvaneVSTOServices::CompoundConstantNames,
                                          &IQuorvaneVSTOServices::TemperatureDependentPropertyNames,
                                          &IQuorvaneVSTOServices::PhaseNames,
                                          &IQuorvaneVSTOServices::SinglePhasePropertyNames,
                                          &IQuorvaneVSTOServices::TwoPhasePropertyNames,
                                          &IQuorvaneVSTOServices::PhaseEquilibriumConditionNames};

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
    const List list = dice_.of(allLists);
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

// Whether lists and material have been asked for since the last edit makes a difference in memory.
void World::settleLasting() {
    excel_->setActiveWorkbook(lastingWorkbook_);
    IUnknown* const workbook = lastingWorkbook_->dispatch();
    for (const Kind& kind : lastingKinds_) {
        const com::unique_bstr name = com::makeBstr(kind.name);
        for (const List list : allLists) {
            com::variant names;
            (lastingAddIn_.get()->*list)(workbook, name.get(), &names);
        }
        const com::unique_bstr property = com::makeBstr(kind.vocabulary.singlePhase.front());
        const com::unique_bstr phase = com::makeBstr(kind.vocabulary.phases.front());
        const com::variant amounts =
            com::realArray(std::vector<double>(kind.vocabulary.compounds.size(), 1.0));
        const com::variant missing = com::variant::missing();
        com::variant value;
        lastingAddIn_->CapeOpenMixtureProperty(name.get(), property.get(), phase.get(), 100.0, 1e5, amounts,
                                               missing, missing, missing, missing, missing, &value);
    }
    activate();
}

std::string World::lastingService() {
    SetErrorInfo(0, nullptr);
    IUnknown* const workbook = lastingWorkbook_->dispatch();
    const Kind& kind = dice_.of(lastingKinds_);
    const com::unique_bstr name = com::makeBstr(kind.name);
    HRESULT code = S_OK;
    switch (dice_.below(3)) {
    case 0: {
        // Only packages without a window can be edited here.
        VARIANT_BOOL changed = VARIANT_FALSE;
        code = kind.script ? addIn_->EditWorkbookPP(workbook, name.get(), &changed) : S_OK;
        break;
    }
    case 1: {
        com::variant table;
        code = addIn_->Persist(workbook, &table);
        break;
    }
    default:
        return lists(workbook, name.get());
    }
    return judge_.complaint(code, ownFailure());
}

} // namespace chance
