// Saving and restoring what packages keep, beside zlib on the same bytes; and how much memory that takes.
#include "bench/figures.h"
#include "bench/instant_package.h"
#include "bench/quick_excel.h"
#include "tests/leak_gate/allocations.h"
#include "tests/leak_gate/hooks.h"

#include <algorithm>
#include <cstdio>
#include <zlib.h>

namespace bench {

namespace {

using StateBytes = std::vector<unsigned char>;

constexpr double goalOfSaving = 1.1;
constexpr double goalOfRestoring = 1.3;
constexpr double goalOfMemory = 4.0; // times the state
constexpr std::size_t rounds = 15;
constexpr std::size_t compounds = 2;

struct Size {
    const char* name;
    std::size_t bytes;
};
constexpr Size sizes[] = {{"1 kB", 1000}, {"1 MB", 1000000}, {"64 MB", 64000000}};

// Parameters as packages write them: words that repeat, numbers that do not.
StateBytes parameters(std::size_t size) {
    StateBytes state;
    unsigned long long random = 1;
    while (state.size() < size) {
        random = random * 6364136223846793005U + 1442695040888963407U;
        char line[80];
        const int length = std::snprintf(line, sizeof line, "binary interaction parameter %llu: %.12g\n",
                                         random >> 60U, static_cast<double>(random >> 32U) / 1e10);
        state.insert(state.end(), line, line + length);
    }
    state.resize(size);
    return state;
}

// A workbook with one package that keeps `size` bytes, and the same bytes for zlib alone.
class SavedState {
  public:
    SavedState(const Server& server, std::size_t size)
        : state_{std::make_shared<const StateBytes>(parameters(size))}, class_{compounds, state_},
          addIn_{server, application_->dispatch()}, compressed_(compressBound(static_cast<uLong>(size))),
          restored_(size) {
        addIn_.attach(workbook_->dispatch(), L"Package with a state", instantPackageClass);
        deflateAlone();
        require(addIn_->Persist(workbook_->dispatch(), table_.put()), "A package cannot be saved");
    }

    void persist() {
        com::variant table;
        require(addIn_->Persist(workbook_->dispatch(), &table), "A package cannot be saved");
    }
    void depersist() {
        require(addIn_->Depersist(workbook_->dispatch(), table_), "A package cannot be restored");
    }
    void deflateAlone() {
        compressedSize_ = static_cast<uLongf>(compressed_.size());
        require(compress2(compressed_.data(), &compressedSize_, state_->data(),
                          static_cast<uLong>(state_->size()), Z_BEST_COMPRESSION) == Z_OK
                    ? S_OK
                    : E_FAIL,
                "zlib does not compress");
    }
    void inflateAlone() {
        auto size = static_cast<uLongf>(restored_.size());
        require(uncompress(restored_.data(), &size, compressed_.data(), compressedSize_) == Z_OK ? S_OK
                                                                                                 : E_FAIL,
                "zlib does not decompress");
    }

    // What restoring cannot do without: a new package, which reads a copy; the text is kept; its bytes and
    // the state have memory of their own.
    void restoreByHand() {
        com::com_ptr<IDispatch> package;
        require(CoCreateInstance(instantPackageClass, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                                 package.putVoid()),
                "A package cannot be made");
        const std::wstring text(4 * static_cast<std::size_t>(compressedSize_) / 3, L'A');
        const StateBytes compressed(compressed_.begin(),
                                    compressed_.begin() + static_cast<std::ptrdiff_t>(compressedSize_));
        StateBytes restored(restored_.size());
        auto size = static_cast<uLongf>(restored.size());
        require(uncompress(restored.data(), &size, compressed.data(), compressedSize_) == Z_OK ? S_OK
                                                                                               : E_FAIL,
                "zlib does not decompress");
        unsigned char block[InstantPackage::blockSize];
        for (std::size_t begin = 0; begin < restored.size(); begin += sizeof block) {
            std::copy_n(&restored[begin], std::min(sizeof block, restored.size() - begin), block);
            checksum_ += block[0];
        }
        checksum_ += static_cast<unsigned>(text.back());
    }

  private:
    com::com_ptr<QuickWorkbook> workbook_ = com::make<QuickWorkbook>();
    com::com_ptr<QuickApplication> application_ = com::make<QuickApplication>(workbook_);
    std::shared_ptr<const StateBytes> state_;
    InstantClass class_;
    AddIn addIn_;
    com::variant table_;
    StateBytes compressed_;
    uLongf compressedSize_ = 0;
    StateBytes restored_;
    unsigned checksum_ = 0; // or the compiler leaves the reading out
};

std::string named(const char* what, const Size& size) { return std::string{what} + " of " + size.name; }

// The most memory in use during the call, in multiples of the state: the most of the add-in's own and the
// most of COM's, which need not fall together.
template <typename Call>
double memoryOf(std::size_t size, Call call) {
    leak_gate::watchLoadedModules();
    call();
    const leak_gate::AllocationUse heap{leak_gate::ownerOf("Quorvane.dll")};
    const leak_gate::AllocationUse com{leak_gate::comAllocator};
    call();
    return static_cast<double>(heap.peakBytes() + com.peakBytes()) / static_cast<double>(size);
}

} // namespace

void savedStates(Report& report, const Server& server) {
    for (const Size& size : sizes) {
        const std::string saving = named("Persist", size);
        const std::string restoring = named("Depersist", size);
        if (!report.wants(saving) && !report.wants(restoring)) {
            continue;
        }
        SavedState state{server, size.bytes};
        if (report.wants(saving)) {
            report.time(saving, "zlib, level 9",
                        compare({[&] { state.persist(); }}, {[&] { state.deflateAlone(); }}, rounds),
                        goalOfSaving);
        }
        if (report.wants(restoring)) {
            report.time(restoring, "zlib",
                        compare({[&] { state.depersist(); }}, {[&] { state.inflateAlone(); }}, rounds),
                        goalOfRestoring);
            // How much of the ratio above belongs to the task.
            report.compared(restoring, "zlib, new package, fresh memory",
                            compare({[&] { state.depersist(); }}, {[&] { state.restoreByHand(); }}, rounds));
        }
    }
}

void memoryOfSavedStates(Report& report, const Server& server) {
    for (const Size& size : {sizes[1], sizes[2]}) {
        const std::string figure = named("memory for Persist", size) + ", times the state";
        if (report.wants(figure)) {
            SavedState state{server, size.bytes};
            report.count(figure, memoryOf(size.bytes, [&] { state.persist(); }), goalOfMemory);
        }
    }
}

} // namespace bench
