#include "tests/faults/inject.h"

namespace faults {

namespace {

using scripted::QueryAnswer;
using scripted::wide;

QueryAnswer queryAnswer(HRESULT code, Manner manner) {
    using Pointer = QueryAnswer::Pointer;
    const bool fails = FAILED(code) || manner == Manner::nothing;
    return {code, !fails ? Pointer::Interface : manner == Manner::rubbish ? Pointer::Rubbish : Pointer::None};
}

} // namespace

bool isScripted(const Call& call) {
    return call.object.starts_with("package") || call.object.starts_with("manager") ||
           call.object == "stream";
}

namespace {

void injectQuery(Stage& stage, const Call& call, const QueryAnswer& answer) {
    const IID iid = iidNamed(call.interfaceName);
    if (isScripted(call)) {
        stage.scriptOf(call.object).answersQuery(iid, answer);
    } else if (call.object == "frontEnd") {
        stage.newFrontEnd()->queries.answersQuery(iid, answer);
    } else {
        stage.objectNamed(call.object)->queries.answersQuery(iid, answer);
    }
}

void injectScripted(scripted::Script& script, const Call& call, HRESULT code, Manner manner) {
    const std::wstring words = manner == Manner::spoken ? wide(spokenWords) : L"";
    if (SUCCEEDED(code) || manner == Manner::late) {
        script.ends(call.method, code);
    } else if (call.object.ends_with(" call 2")) {
        script.failsAt(2, call.method, code, words);
    } else {
        script.fails(call.method, code, words);
    }
}

} // namespace

void inject(Stage& stage, const Call& call, HRESULT code, Manner manner) {
    if (call.isQuery() || call.isCreation()) {
        injectQuery(stage, call, queryAnswer(code, manner));
    } else if (isScripted(call)) {
        injectScripted(stage.scriptOf(call.object), call, code, manner);
    } else if (call.object == "frontEnd") {
        stage.newFrontEnd()->code = code;
    } else if (call.interfaceName == "IErrorInfo") {
        stage.objectNamed(call.object)
            ->describes(code,
                        SUCCEEDED(code) ? std::optional<std::wstring>{L"the cells are busy"} : std::nullopt);
    } else if (manner == Manner::unnamed) {
        stage.objectNamed(call.object)->failsToFind(wide(call.method), code);
    } else {
        stage.objectNamed(call.object)->failsToRead(wide(call.method), code);
    }
}

void takeBack(Stage& stage, const Call& call) {
    if (isScripted(call)) {
        scripted::Script& script = stage.scriptOf(call.object);
        script.recovers(call.method);
        if (call.isQuery() || call.isCreation()) {
            script.recovers(iidNamed(call.interfaceName));
        }
    } else if (call.object == "frontEnd") {
        stage.newFrontEnd()->queries.recovers();
        stage.newFrontEnd()->code = S_OK;
    } else if (call.interfaceName == "IErrorInfo" && !call.isQuery()) {
        stage.objectNamed(call.object)->describes(S_OK, L"the cells are busy");
    } else if (call.isQuery()) {
        stage.objectNamed(call.object)->queries.recovers();
    } else {
        stage.objectNamed(call.object)->readsAgain();
    }
}

} // namespace faults
