// Workbooks with scripted packages that are saved into tables of texts and restored from them. Messages to
// the user are caught.
#pragma once

#include "src/workbook/persistence.h"
#include "tests/src/package/package_fixture.h"
#include "tests/src/workbook/saved_table.h"

namespace quorvane {

using Messages = std::vector<std::string>;

/// What an array holds. Anything but VT_EMPTY must have the shape that workbooks rely on.
Table tableIn(const VARIANT& array);

class PersistenceTest : public PackageTest {
  protected:
    static constexpr WorkbookKey book = 1;
    static constexpr WorkbookKey otherBook = 2;

    void attach(const wchar_t* name) {
        store.createPackage(book, name, L"Scripted", scripted::packageInProcess, StandAlonePackage11, L"");
    }

    Table save(WorkbookKey workbook = book);
    void restore(const VARIANT& array, WorkbookKey workbook = book) {
        depersist(store, workbook, array, report);
    }
    void restore(const Table& table, WorkbookKey workbook = book) { restore(arrayOf(table), workbook); }

    std::vector<std::wstring> namesIn(WorkbookKey workbook = book) const;

    /// The row of a scripted package.
    static Row row(std::wstring name, std::wstring stateText = {}) {
        return {std::move(name), L"Scripted", L"StandAlonePackage11", scriptedGuid, {}, std::move(stateText)};
    }

    void setState(const Bytes& bytes) { script.model.state.assign(bytes.begin(), bytes.end()); }
    Bytes state() const { return bytesOf(script.model.state); }

    static constexpr const wchar_t* scriptedGuid = L"{7C0C0A57-5D0E-4F53-9B0B-0C8B8B3C55A1}";

    Messages messages;
    const Report report = [this](const std::wstring& message) {
        messages.push_back(scripted::narrow(message));
    };
    WorkbookStore store;
};

} // namespace quorvane
