// What opening Excel pays: loading the add-in, making its object, the first call; and how large it is.
#include "bench/figures.h"

#include <filesystem>
#include <optional>

namespace bench {

namespace {

constexpr double goalOfLoading = 1.5;
constexpr double goalOfSize = 400.0; // kB
constexpr std::size_t rounds = 41;

class Loading {
  public:
    explicit Loading(const wchar_t* file) : file_{file} {}
    ~Loading() { unload(); }
    Loading(const Loading&) = delete;
    Loading& operator=(const Loading&) = delete;

    void load() {
        server_.emplace(file_);
        com::unique_bstr unit;
        require(server_->createFunctions()->CapeOpenUnitOfMeasure(property_.get(), basis_, unit.put()),
                "A server does not tell a unit of measure");
    }
    void unload() noexcept {
        if (server_) {
            server_->unload();
            server_.reset();
        }
    }

  private:
    const wchar_t* file_;
    std::optional<Server> server_;
    com::unique_bstr property_ = com::makeBstr(L"enthalpy");
    com::variant basis_ = com::variant::missing();
};

} // namespace

void loading(Report& report) {
    constexpr const char* figure = "load, create, first unit of measure";
    if (!report.wants(figure)) {
        return;
    }
    Loading addIn{L"Quorvane.dll"};
    Loading empty{L"EmptyServer.dll"};
    report.time(figure, "empty server",
                compare({[&] { addIn.load(); }, [&] { addIn.unload(); }, 1},
                        {[&] { empty.load(); }, [&] { empty.unload(); }, 1}, rounds),
                goalOfLoading);
}

void size(Report& report) {
    constexpr const char* figure = "size of the DLL, kB";
    if (report.wants(figure)) {
        report.judge(
            figure, static_cast<double>(std::filesystem::file_size(Server::pathOf(L"Quorvane.dll"))) / 1000.0,
            goalOfSize);
    }
}

} // namespace bench
