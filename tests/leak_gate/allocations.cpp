#include "tests/leak_gate/allocations.h"

#include "com/platform.h"

#include <algorithm>
#include <array>
#include <climits>
#include <mutex>
#include <new>
#include <stdexcept>
#include <unordered_map>
#include <utility>

namespace leak_gate {

namespace {

// The book must not write into itself: its own memory comes from the system.
template <typename T>
struct SystemAllocator {
    using value_type = T;
    SystemAllocator() = default;
    template <typename U>
    explicit SystemAllocator(const SystemAllocator<U>&) noexcept {}
    T* allocate(std::size_t count) {
        void* const memory = HeapAlloc(GetProcessHeap(), 0, count * sizeof(T));
        if (memory == nullptr) {
            throw std::bad_alloc{};
        }
        return static_cast<T*>(memory);
    }
    void deallocate(T* memory, std::size_t) noexcept { HeapFree(GetProcessHeap(), 0, memory); }
    bool operator==(const SystemAllocator&) const noexcept { return true; }
};

struct Block {
    Owner owner;
    std::size_t size;
};

struct Account {
    char name[64];
    Use use;
    long long peakBytes;
    long long allocations;
};

struct RefusalState {
    bool armed;
    Owner owner;
    Owner importer;
    long long position;
    long long count;
    long long reached;
};

struct Lock {
    void lock() noexcept { AcquireSRWLockExclusive(&system); }
    void unlock() noexcept { ReleaseSRWLockExclusive(&system); }
    SRWLOCK system = SRWLOCK_INIT;
};

struct Book {
    Lock lock;
    std::unordered_map<void*, Block, std::hash<void*>, std::equal_to<>,
                       SystemAllocator<std::pair<void* const, Block>>>
        blocks;
    std::array<Account, mostOwners> accounts{};
    Owner owners = 0;
    RefusalState refusal{};
    Owner importer =
        0;            // whose call is under way and has not allocated yet; none when it is that of COM itself
    DWORD thread = 0; // on which allocations may be refused
};

// Never destroyed: memory is freed until the very end of the program.
Book& theBook() {
    alignas(Book) static unsigned char place[sizeof(Book)];
    static Book* const instance = new (place) Book;
    return *instance;
}

Owner enterLocked(Book& book, std::string_view name) {
    for (Owner owner = 0; owner < book.owners; ++owner) {
        if (name == book.accounts[owner].name) {
            return owner;
        }
    }
    if (book.owners == mostOwners) {
        return testProgram;
    }
    name.substr(0, sizeof(Account::name) - 1).copy(book.accounts[book.owners].name, sizeof(Account::name));
    return book.owners++;
}

} // namespace

namespace book {

Owner enter(const char* name) {
    Book& book = theBook();
    const std::lock_guard guard{book.lock};
    return enterLocked(book, name);
}

const char* nameOf(Owner owner) { return theBook().accounts[owner].name; }

Owner owners() { return theBook().owners; }

Use useOf(Owner owner) {
    Book& book = theBook();
    const std::lock_guard guard{book.lock};
    return book.accounts[owner].use;
}

bool refuses(Owner owner) {
    Book& book = theBook();
    RefusalState& refusal = book.refusal;
    if (!refusal.armed || refusal.owner != owner || GetCurrentThreadId() != book.thread ||
        (owner == comAllocator && std::exchange(book.importer, comAllocator) != refusal.importer)) {
        return false;
    }
    ++refusal.reached;
    return refusal.reached >= refusal.position && refusal.reached - refusal.position < refusal.count;
}

void beginImportedCall(Owner importer) {
    Book& book = theBook();
    if (GetCurrentThreadId() == book.thread) {
        book.importer = importer;
    }
}

void endImportedCall() { beginImportedCall(comAllocator); }

void add(Owner owner, void* block, std::size_t size) {
    Book& book = theBook();
    const std::lock_guard guard{book.lock};
    book.blocks.insert_or_assign(block, Block{owner, size});
    Account& account = book.accounts[owner];
    ++account.allocations;
    ++account.use.blocks;
    account.use.bytes += static_cast<long long>(size);
    account.peakBytes = std::max(account.peakBytes, account.use.bytes);
}

bool remove(void* block, std::size_t& size) {
    Book& book = theBook();
    const std::lock_guard guard{book.lock};
    const auto found = book.blocks.find(block);
    if (found == book.blocks.end()) {
        return false;
    }
    size = found->second.size;
    Account& account = book.accounts[found->second.owner];
    --account.use.blocks;
    account.use.bytes -= static_cast<long long>(size);
    book.blocks.erase(found);
    return true;
}

} // namespace book

Owner ownerOf(std::string_view dll) {
    Book& book = theBook();
    for (Owner owner = 0; owner < book.owners; ++owner) {
        if (dll == book.accounts[owner].name) {
            return owner;
        }
    }
    throw std::invalid_argument{std::string{dll} + " is not watched"};
}

AllocationUse::AllocationUse(Owner owner) : owner_{owner} {
    Book& book = theBook();
    const std::lock_guard guard{book.lock};
    Account& account = book.accounts[owner];
    before_ = account.use;
    allocationsBefore_ = account.allocations;
    account.peakBytes = account.use.bytes;
}

long long AllocationUse::blocks() const { return book::useOf(owner_).blocks - before_.blocks; }

long long AllocationUse::peakBytes() const { return theBook().accounts[owner_].peakBytes - before_.bytes; }

long long AllocationUse::allocations() const {
    return theBook().accounts[owner_].allocations - allocationsBefore_;
}

Refusal::Refusal(Owner owner, long long position, Extent extent) : Refusal{owner, owner, position, extent} {}

Refusal Refusal::ofCom(Owner importer, long long position, Extent extent) {
    return Refusal{comAllocator, importer, position, extent};
}

Refusal::Refusal(Owner owner, Owner importer, long long position, Extent extent) {
    Book& book = theBook();
    book.thread = GetCurrentThreadId();
    book.importer = comAllocator;
    const long long count = extent == Extent::One ? 1 : extent == Extent::Two ? 2 : LLONG_MAX;
    book.refusal = {true, owner, importer, position, count, 0};
}

Refusal::~Refusal() { theBook().refusal.armed = false; }

bool Refusal::happened() const {
    const RefusalState& refusal = theBook().refusal;
    return refusal.reached >= refusal.position;
}

} // namespace leak_gate
