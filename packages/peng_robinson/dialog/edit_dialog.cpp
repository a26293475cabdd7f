#include "packages/peng_robinson/dialog/edit_dialog.h"

#include "com/type_library.h"
#include "packages/peng_robinson/catalogue/decimal.h"
#include "packages/peng_robinson/dialog/controls.h"
#include "packages/peng_robinson/dialog/utf8.h"

#include <algorithm>
#include <exception>
#include <optional>

namespace peng_robinson {
namespace {

class EditDialog {
  public:
    EditDialog(EditModel& model, const std::wstring& title) : model_{model}, title_{title} {}

    DialogAnswer show();

  private:
    static INT_PTR CALLBACK procedure(HWND window, UINT message, WPARAM wide, LPARAM extra) noexcept;

    void begin(HWND window);
    void command(int control, int notification);
    void edit(int control);
    void accept();

    void showCompounds(std::optional<std::size_t> available, std::optional<std::size_t> chosen);
    void showPairs();
    void showPair();
    void showTypedParameter();
    void enableButtons();
    bool refusesToLeaveThePair();

    HWND control(int id) const { return GetDlgItem(window_, id); }
    LRESULT send(int id, UINT message, WPARAM wide = 0, LPARAM extra = 0) const {
        return SendDlgItemMessageW(window_, id, message, wide, extra);
    }
    void append(int list, std::string_view text) const {
        send(list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(widen(text).c_str()));
    }
    std::optional<std::size_t> selected(int list) const {
        const LRESULT index = send(list, LB_GETCURSEL);
        return index < 0 ? std::nullopt : std::optional{static_cast<std::size_t>(index)};
    }
    void select(int list, std::optional<std::size_t> index) const {
        send(list, LB_SETCURSEL, index ? *index : static_cast<WPARAM>(-1));
    }
    void setText(int id, std::string_view text) const { SetDlgItemTextW(window_, id, widen(text).c_str()); }
    std::string text(int id) const;
    std::string lineOf(const CompoundPair& pair) const;

    EditModel& model_;
    const std::wstring& title_;
    HWND window_ = nullptr;
    std::vector<std::size_t> available_; ///< as listed
    std::vector<CompoundPair> pairs_;    ///< as listed
    std::optional<std::size_t> pair_;    ///< the one whose parameter is in the field
    bool isFilling_ = false;             ///< the field changes by program, not by a person
    std::optional<std::string> mistake_; ///< in the field
    std::exception_ptr failure_;
};

DialogAnswer EditDialog::show() {
    const INT_PTR answer = DialogBoxParamW(com::thisModule(), MAKEINTRESOURCEW(EDIT_PACKAGE),
                                           GetActiveWindow(), procedure, reinterpret_cast<LPARAM>(this));
    if (failure_ != nullptr) {
        std::rethrow_exception(failure_);
    }
    return answer == IDOK       ? DialogAnswer::accepted
           : answer == IDCANCEL ? DialogAnswer::cancelled
                                : DialogAnswer::unavailable;
}

// Windows calls this, so nothing may be thrown through it.
INT_PTR CALLBACK EditDialog::procedure(HWND window, UINT message, WPARAM wide, LPARAM extra) noexcept {
    if (message == WM_INITDIALOG) {
        SetWindowLongPtrW(window, DWLP_USER, extra);
    }
    auto* const dialog = reinterpret_cast<EditDialog*>(GetWindowLongPtrW(window, DWLP_USER));
    if (dialog == nullptr || (message != WM_INITDIALOG && message != WM_COMMAND)) {
        return FALSE;
    }
    try {
        if (message == WM_INITDIALOG) {
            dialog->begin(window);
        } else {
            dialog->command(LOWORD(wide), HIWORD(wide));
        }
    } catch (...) {
        dialog->failure_ = std::current_exception();
        EndDialog(window, IDCANCEL);
    }
    return TRUE;
}

void EditDialog::begin(HWND window) {
    window_ = window;
    SetWindowTextW(window, title_.c_str());
    constexpr int valueColumn = 140; // dialog units, right of the longest usual pair
    send(CONTROL_PAIRS, LB_SETTABSTOPS, 1, reinterpret_cast<LPARAM>(&valueColumn));
    send(CONTROL_PARAMETER, EM_SETLIMITTEXT, 40);
    showCompounds(0, 0);
    pair_ = 0;
    showPairs();
}

void EditDialog::command(int id, int notification) {
    switch (id) {
    case IDOK:
        accept();
        break;
    case IDCANCEL:
        EndDialog(window_, IDCANCEL);
        break;
    case CONTROL_AVAILABLE:
    case CONTROL_CHOSEN:
        if (notification == LBN_SELCHANGE) {
            enableButtons();
        } else if (notification == LBN_DBLCLK) {
            edit(id == CONTROL_AVAILABLE ? CONTROL_ADD : CONTROL_REMOVE);
        }
        break;
    case CONTROL_PAIRS:
        if (notification == LBN_SELCHANGE && selected(CONTROL_PAIRS) != pair_ && !refusesToLeaveThePair()) {
            pair_ = selected(CONTROL_PAIRS);
            showPair();
        }
        break;
    case CONTROL_PARAMETER:
        if (notification == EN_CHANGE && !isFilling_ && pair_) {
            mistake_ = model_.setParameter(pairs_[*pair_], text(CONTROL_PARAMETER));
            showTypedParameter();
        }
        break;
    case CONTROL_USE_TABULATED:
        if (pair_) {
            model_.useTabulatedParameter(pairs_[*pair_]);
            mistake_.reset(); // what was typed is given up
            showTypedParameter();
            showPair();
        }
        break;
    default:
        if (notification == BN_CLICKED) {
            edit(id);
        }
    }
}

// The four buttons that change the compounds.
void EditDialog::edit(int id) {
    const auto available = selected(CONTROL_AVAILABLE), chosen = selected(CONTROL_CHOSEN);
    const bool needsAvailable = id == CONTROL_ADD;
    if (!(needsAvailable ? available : chosen) || refusesToLeaveThePair()) {
        return;
    }
    switch (id) {
    case CONTROL_ADD:
        model_.add(available_[*available]);
        showCompounds(available, model_.chosen().size() - 1);
        break;
    case CONTROL_REMOVE: {
        const std::size_t compound = model_.chosen()[*chosen];
        model_.remove(*chosen);
        // Where Add brings it back.
        const std::vector<std::size_t> others = model_.available();
        showCompounds(static_cast<std::size_t>(std::ranges::find(others, compound) - others.begin()), chosen);
        break;
    }
    case CONTROL_UP:
        model_.moveUp(*chosen);
        showCompounds(available, *chosen == 0 ? 0 : *chosen - 1);
        break;
    case CONTROL_DOWN:
        model_.moveDown(*chosen);
        showCompounds(available, *chosen + 1);
        break;
    default:
        return;
    }
    showPairs();
}

void EditDialog::accept() {
    if (refusesToLeaveThePair()) {
        return;
    }
    if (const std::optional<std::string> problem = model_.problem()) {
        setText(CONTROL_MESSAGE, *problem);
        MessageBeep(MB_ICONWARNING);
        SetFocus(control(CONTROL_AVAILABLE));
        return;
    }
    EndDialog(window_, IDOK);
}

// Both lists, each with the given selection or the last entry where there are not so many.
void EditDialog::showCompounds(std::optional<std::size_t> available, std::optional<std::size_t> chosen) {
    available_ = model_.available();
    const auto fill = [this](int list, const std::vector<std::size_t>& compounds,
                             std::optional<std::size_t> index) {
        send(list, WM_SETREDRAW, FALSE);
        send(list, LB_RESETCONTENT);
        for (const std::size_t compound : compounds) {
            append(list, model_.nameOf(compound));
        }
        send(list, WM_SETREDRAW, TRUE);
        if (compounds.empty()) {
            index.reset();
        }
        select(list, index ? std::optional{std::min(*index, compounds.size() - 1)} : index);
    };
    fill(CONTROL_AVAILABLE, available_, available);
    fill(CONTROL_CHOSEN, model_.chosen(), chosen);
    setText(CONTROL_MESSAGE, {});
    enableButtons();
}

// The pair that was selected stays so while it is there.
void EditDialog::showPairs() {
    const std::optional<CompoundPair> before =
        pair_ && *pair_ < pairs_.size() ? std::optional{pairs_[*pair_]} : std::nullopt;
    pairs_ = model_.pairs();
    send(CONTROL_PAIRS, WM_SETREDRAW, FALSE);
    send(CONTROL_PAIRS, LB_RESETCONTENT);
    for (const CompoundPair& pair : pairs_) {
        append(CONTROL_PAIRS, lineOf(pair));
    }
    send(CONTROL_PAIRS, WM_SETREDRAW, TRUE);
    const auto found = before ? std::ranges::find(pairs_, *before) : pairs_.end();
    pair_ = pairs_.empty()          ? std::nullopt
            : found == pairs_.end() ? std::optional<std::size_t>{0}
                                    : std::optional{static_cast<std::size_t>(found - pairs_.begin())};
    select(CONTROL_PAIRS, pair_);
    showPair();
}

void EditDialog::showPair() {
    isFilling_ = true;
    mistake_.reset();
    setText(CONTROL_PARAMETER, pair_ ? decimalText(model_.parameter(pairs_[*pair_])) : std::string{});
    setText(CONTROL_TABULATED,
            pair_ ? "Table value: " + decimalText(model_.tabulatedParameter(pairs_[*pair_])) : std::string{});
    setText(CONTROL_MESSAGE, {});
    EnableWindow(control(CONTROL_PARAMETER), pair_.has_value());
    EnableWindow(control(CONTROL_USE_TABULATED), pair_.has_value());
    isFilling_ = false;
}

// The field has changed: so does the line of its pair, or the message.
void EditDialog::showTypedParameter() {
    setText(CONTROL_MESSAGE, mistake_.value_or(std::string{}));
    if (!mistake_) {
        const WPARAM index = *pair_;
        send(CONTROL_PAIRS, LB_DELETESTRING, index);
        send(CONTROL_PAIRS, LB_INSERTSTRING, index,
             reinterpret_cast<LPARAM>(widen(lineOf(pairs_[*pair_])).c_str()));
        select(CONTROL_PAIRS, pair_);
    }
}

void EditDialog::enableButtons() {
    const auto chosen = selected(CONTROL_CHOSEN);
    const struct {
        int button;
        bool isUseful;
    } buttons[] = {
        {CONTROL_ADD, selected(CONTROL_AVAILABLE).has_value()},
        {CONTROL_REMOVE, chosen.has_value()},
        {CONTROL_UP, chosen && *chosen > 0},
        {CONTROL_DOWN, chosen && *chosen + 1 < model_.chosen().size()},
    };
    for (const auto& [button, isUseful] : buttons) {
        // A person who works with the keyboard must not be left on a button that is disabled.
        if (!isUseful && GetFocus() == control(button)) {
            SendMessageW(window_, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(control(CONTROL_CHOSEN)), TRUE);
        }
        EnableWindow(control(button), isUseful);
    }
}

// A number that cannot be used stays in the field, with its message, until it is corrected.
bool EditDialog::refusesToLeaveThePair() {
    if (!mistake_) {
        return false;
    }
    select(CONTROL_PAIRS, pair_);
    MessageBeep(MB_ICONWARNING);
    SendMessageW(window_, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(control(CONTROL_PARAMETER)), TRUE);
    return true;
}

std::string EditDialog::text(int id) const {
    std::wstring content(64, L'\0');
    content.resize(GetDlgItemTextW(window_, id, content.data(), static_cast<int>(content.size())));
    return narrow(content);
}

std::string EditDialog::lineOf(const CompoundPair& pair) const {
    std::string line = model_.nameOf(pair) + '\t' + decimalText(model_.parameter(pair));
    return model_.isChanged(pair) ? line + " *" : line;
}

// A service has a window station that nobody sees: a window on it would wait for ever.
bool hasScreen() {
    USEROBJECTFLAGS flags{};
    return GetUserObjectInformationW(GetProcessWindowStation(), UOI_FLAGS, &flags, sizeof flags, nullptr) !=
               0 &&
           (flags.dwFlags & WSF_VISIBLE) != 0;
}

} // namespace

DialogAnswer showEditDialog(EditModel& model, const std::wstring& title) {
    return hasScreen() ? EditDialog{model, title}.show() : DialogAnswer::unavailable;
}

} // namespace peng_robinson
