#include "tests/leak_gate/allocations.h"

#include "com/platform.h"

#include <algorithm>
#include <array>
#include <climits>
#include <mutex>
#include <new>
#include <optional>
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
        // NOLINTNEXTLINE(bugprone-sizeof-expression): some of what a table holds are pointers
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
    Serial serial;
    Block* older = nullptr;
    Block* newer = nullptr;
};

// The blocks in the order of their numbers, so that the latest are found without a look at all of them.
class Order {
  public:
    void append(Block& block) noexcept {
        block.older = newest_;
        (newest_ == nullptr ? newest_ : newest_->newer) = &block;
        newest_ = &block;
    }
    void remove(const Block& block) noexcept {
        (block.newer == nullptr ? newest_ : block.newer->older) = block.older;
        if (block.older != nullptr) {
            block.older->newer = block.newer;
        }
    }
    const Block* newest() const noexcept { return newest_; }

  private:
    Block* newest_ = nullptr;
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
    Order order;
    Serial latest = 0;
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

bool isArmed(const Book& book, Owner owner) {
    return book.refusal.armed && book.refusal.owner == owner && GetCurrentThreadId() == book.thread;
}

bool reachesRefused(RefusalState& refusal) {
    ++refusal.reached;
    return refusal.reached >= refusal.position && refusal.reached - refusal.position < refusal.count;
}

// The size of the block that was in the book.
std::optional<std::size_t> takeOut(Book& book, void* block) {
    const auto found = book.blocks.find(block);
    if (found == book.blocks.end()) {
        return std::nullopt;
    }
    const std::size_t size = found->second.size;
    Use& use = book.accounts[found->second.owner].use;
    --use.blocks;
    use.bytes -= static_cast<long long>(size);
    book.order.remove(found->second);
    book.blocks.erase(found);
    return size;
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

Serial latest() {
    Book& book = theBook();
    const std::lock_guard guard{book.lock};
    return book.latest;
}

UseOfAll leftOf(Serial after, Serial last) {
    Book& book = theBook();
    const std::lock_guard guard{book.lock};
    UseOfAll left{};
    for (const Block* block = book.order.newest(); block != nullptr && block->serial > after;
         block = block->older) {
        if (block->serial <= last) {
            ++left[block->owner].blocks;
            left[block->owner].bytes += static_cast<long long>(block->size);
        }
    }
    return left;
}

bool refuses(Owner owner) {
    Book& book = theBook();
    return isArmed(book, owner) &&
           (owner != comAllocator || std::exchange(book.importer, comAllocator) == book.refusal.importer) &&
           reachesRefused(book.refusal);
}

bool refusesCall(Owner owner) {
    Book& book = theBook();
    return isArmed(book, comAllocator) && owner == book.refusal.importer && reachesRefused(book.refusal);
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
    takeOut(book, block);
    book.order.append(book.blocks.try_emplace(block, Block{owner, size, ++book.latest}).first->second);
    Account& account = book.accounts[owner];
    ++account.allocations;
    ++account.use.blocks;
    account.use.bytes += static_cast<long long>(size);
    account.peakBytes = std::max(account.peakBytes, account.use.bytes);
}

bool remove(void* block, std::size_t& size) {
    Book& book = theBook();
    const std::lock_guard guard{book.lock};
    const std::optional<std::size_t> taken = takeOut(book, block);
    size = taken.value_or(size);
    return taken.has_value();
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
