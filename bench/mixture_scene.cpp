#include "bench/mixture_scene.h"

namespace bench {

std::vector<double> molecularWeights(std::size_t compounds) {
    std::vector<double> weights;
    for (std::size_t i = 0; i < compounds; ++i) {
        weights.push_back(InstantPackage::molecularWeight(i));
    }
    return weights;
}

MixtureScene::MixtureScene(const Server& server, const MixtureArguments& arguments)
    : packages{arguments.compounds}, addIn{server, application->dispatch()}, call{arguments},
      direct{application->dispatch(), instantPackageClass, molecularWeights(arguments.compounds)},
      careful{application->dispatch(), instantPackageClass, arguments.package, arguments.compounds} {
    addIn.attach(workbook->dispatch(), arguments.package, instantPackageClass);
}

void MixtureScene::addInByVtable() const {
    com::variant result;
    call.byVtable(addIn.get(), &result);
}

void MixtureScene::addInByInvoke() {
    com::variant result;
    call.byInvoke(addIn.get(), &result);
}

void MixtureScene::client() {
    com::variant result;
    direct.property(call.property(), call.phase(), MixtureCall::temperature, MixtureCall::pressure,
                    call.composition(), &result);
}

void MixtureScene::carefulClient() {
    com::variant result;
    askCareful(&result);
}

void MixtureScene::askCareful(VARIANT* result) {
    require(careful.property(call.package(), call.property(), call.phase(), MixtureCall::temperature,
                             MixtureCall::pressure, call.composition(), result),
            "The careful client fails");
}

void MixtureScene::clientMatrix() {
    com::variant result;
    direct.matrix(call.property(), call.phase(), MixtureCall::temperature, MixtureCall::pressure,
                  call.composition(), &result);
}

void MixtureScene::requireSameResults() {
    com::variant expected;
    direct.property(call.property(), call.phase(), MixtureCall::temperature, MixtureCall::pressure,
                    call.composition(), &expected);
    com::variant ours;
    call.byVtable(addIn.get(), &ours);
    requireSame(ours, expected);
    com::variant late;
    call.byInvoke(addIn.get(), &late);
    requireSame(late, expected);
    com::variant carefully;
    askCareful(&carefully);
    requireSame(carefully, expected);
}

void MixtureScene::requireSameMatrices() {
    com::variant expected;
    direct.matrix(call.property(), call.phase(), MixtureCall::temperature, MixtureCall::pressure,
                  call.composition(), &expected);
    com::variant ours;
    call.byVtable(addIn.get(), &ours);
    requireSame(ours, expected);
}

} // namespace bench
