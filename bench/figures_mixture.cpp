// Properties of one phase: the add-in beside the hand-written client.
#include "bench/figures.h"
#include "bench/mixture_scene.h"

#include <memory>
#include <vector>

namespace bench {

namespace {

constexpr const char* handWritten = "hand-written client";
constexpr double goalOfCall = 1.25;
constexpr double goalOfDerivative = 1.3;

std::string named(const char* figure, std::size_t compounds) {
    return std::string{figure} + ", " + std::to_string(compounds) +
           (compounds == 1 ? " compound" : " compounds");
}

// Many packages, each to be used once: the conversion of such a derivative to mass basis succeeds only the
// first time with a package.
class DerivativeScene {
  public:
    DerivativeScene(const Server& server, std::size_t compounds)
        : class_{compounds}, weights_{molecularWeights(compounds)}, addIn_{server, application_->dispatch()} {
        for (std::size_t i = 0; i < packages; ++i) {
            names_.push_back(L"Package " + std::to_wstring(i));
            calls_.push_back(std::make_unique<MixtureCall>(MixtureArguments{
                names_.back(), L"enthalpy.DmolFraction", L"mass", L"horizontal", compounds}));
            plain_.push_back(std::make_unique<MixtureCall>(
                MixtureArguments{names_.back(), L"enthalpy", {}, {}, compounds}));
        }
    }

    void attachAll() {
        next_ = 0;
        for (std::size_t i = 0; i < packages; ++i) {
            const com::unique_bstr name = com::makeBstr(names_[i]);
            require(addIn_->DeleteWorkbookPP(workbook_->dispatch(), name.get()),
                    "A package cannot be deleted");
            addIn_.attach(workbook_->dispatch(), names_[i], instantPackageClass);
            com::variant warm;
            plain_[i]->byVtable(addIn_.get(), &warm);
        }
    }

    /// The client's packages are new as well.
    void makeClients() {
        nextClient_ = 0;
        clients_.clear();
        for (std::size_t i = 0; i < packages; ++i) {
            clients_.emplace_back(application_->dispatch(), instantPackageClass, weights_);
            com::variant warm;
            const MixtureCall& plain = *plain_[i];
            clients_[i].property(plain.property(), plain.phase(), MixtureCall::temperature,
                                 MixtureCall::pressure, plain.composition(), &warm);
        }
    }

    void addIn() {
        com::variant result;
        calls_[next_++ % packages]->byVtable(addIn_.get(), &result);
    }

    void client() {
        com::variant result;
        byClient(nextClient_++ % packages, &result);
    }

    void requireSameResults() {
        attachAll();
        makeClients();
        com::variant ours;
        calls_[0]->byVtable(addIn_.get(), &ours);
        com::variant expected;
        byClient(0, &expected);
        requireSame(ours, expected);
    }

    static constexpr std::size_t packages = 100;

  private:
    void byClient(std::size_t i, VARIANT* result) {
        const MixtureCall& call = *calls_[i];
        clients_[i].massDerivative(call.property(), plain_[i]->property(), call.phase(),
                                   MixtureCall::temperature, MixtureCall::pressure, call.composition(),
                                   result);
    }

    com::com_ptr<QuickWorkbook> workbook_ = com::make<QuickWorkbook>();
    com::com_ptr<QuickApplication> application_ = com::make<QuickApplication>(workbook_);
    InstantClass class_;
    std::vector<double> weights_; // g/mol
    AddIn addIn_;
    std::vector<std::wstring> names_;
    std::vector<std::unique_ptr<MixtureCall>> calls_;
    std::vector<std::unique_ptr<MixtureCall>> plain_;
    std::vector<DirectClient> clients_;
    std::size_t next_ = 0;
    std::size_t nextClient_ = 0;
};

} // namespace

void mixtureProperties(Report& report, const Server& server, const Server& emptyServer) {
    const com::com_ptr<IQuorvaneUDF> empty = emptyServer.createFunctions();
    for (const std::size_t compounds : {1U, 10U, 100U}) {
        const std::string byVtable = named("scalar property through the vtable", compounds);
        const std::string byInvoke = named("scalar property through Invoke", compounds);
        if (!report.wants(byVtable) && !report.wants(byInvoke)) {
            continue;
        }
        MixtureScene scene{server, {.compounds = compounds}};
        scene.requireSameResults();
        if (report.wants(byVtable)) {
            report.time(byVtable, handWritten,
                        compare({[&] { scene.addInByVtable(); }}, {[&] { scene.client(); }}), goalOfCall);
        }
        if (report.wants(byVtable)) {
            // How much of the ratio above belongs to the task.
            report.compared(byVtable, "careful client",
                            compare({[&] { scene.addInByVtable(); }}, {[&] { scene.carefulClient(); }}));
        }
        if (report.wants(byInvoke)) {
            const auto emptyAndClient = [&] {
                com::variant result;
                scene.call.byInvoke(empty.get(), &result);
                scene.client();
            };
            report.time(byInvoke, "empty method's Invoke and client",
                        compare({[&] { scene.addInByInvoke(); }}, {emptyAndClient}), goalOfCall);
        }
    }
}

void derivatives(Report& report, const Server& server) {
    for (const std::size_t compounds : {10U, 50U}) {
        if (const std::string figure = named("mole-fraction derivative as a matrix", compounds);
            report.wants(figure)) {
            MixtureScene scene{server,
                               {.property = L"fugacityCoefficient.DmolFraction",
                                .orientation = L"matrix",
                                .compounds = compounds}};
            scene.requireSameMatrices();
            report.time(figure, handWritten,
                        compare({[&] { scene.addInByVtable(); }}, {[&] { scene.clientMatrix(); }}),
                        goalOfDerivative);
        }
        if (const std::string figure = named("mole-fraction derivative, mass basis", compounds);
            report.wants(figure)) {
            DerivativeScene scene{server, compounds};
            scene.requireSameResults();
            report.time(
                figure, "hand-written client, two calls",
                compare({[&] { scene.addIn(); }, [&] { scene.attachAll(); }, DerivativeScene::packages},
                        {[&] { scene.client(); }, [&] { scene.makeClients(); }, DerivativeScene::packages}),
                goalOfDerivative);
        }
    }
}

} // namespace bench
