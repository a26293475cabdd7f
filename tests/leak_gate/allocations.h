// The book of allocations: which blocks each owner has, as the hooks (hooks.h) enter them. Owners are the
// modules of the product and the test program, each with its C++ heap, and COM's task allocator, which holds
// BSTRs and safe arrays whoever made them. Tests look at it through AllocationUse, and refuse allocations
// through Refusal.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace leak_gate {

/// Number of an owner: 0 COM's allocator, 1 the test program, then the DLLs beside it in the order of their
/// loading.
using Owner = std::size_t;

constexpr Owner comAllocator = 0;
constexpr Owner testProgram = 1;
constexpr Owner mostOwners = 8;

/// The DLL of this file name, such as "Quorvane.dll", which must be loaded; throws std::invalid_argument.
Owner ownerOf(std::string_view dll);

struct Use {
    long long blocks = 0;
    long long bytes = 0;
};
using UseOfAll = std::array<Use, mostOwners>;

/// Blocks are numbered in the order of their allocation, from 1; one that is resized is a new block.
using Serial = std::uint64_t;

/// What one owner has allocated since the object was made.
class AllocationUse {
  public:
    explicit AllocationUse(Owner owner = testProgram);

    long long blocks() const; ///< still allocated
    long long
    peakBytes() const; ///< the most that was allocated at a time; of the latest object made for the owner
    long long allocations() const; ///< allocated at all

  private:
    Owner owner_;
    Use before_;
    long long allocationsBefore_;
};

/// While it lives, one allocation of an owner is refused, or it and the next (which is often that of the
/// exception), or all from there on. Of COM it is the first allocation within a function of
/// Automation or COM that `importer` calls: Wine's functions lose memory themselves when they fail half-way.
/// Functions that do not allocate with COM's allocator are refused as a whole.
class Refusal {
  public:
    enum class Extent { One, Two, AllFromThereOn };

    /// `position` counts from 1, from when the object is made.
    Refusal(Owner owner, long long position, Extent extent);
    static Refusal ofCom(Owner importer, long long position, Extent extent);
    Refusal(const Refusal&) = delete;
    Refusal& operator=(const Refusal&) = delete;
    ~Refusal();

    /// Whether the owner came as far as the position.
    bool happened() const;

  private:
    Refusal(Owner owner, Owner importer, long long position, Extent extent);
};

// --- For the hooks
// ---------------------------------------------------------------------------------------------

namespace book {

/// A new owner, or the same as before for the same name.
Owner enter(const char* name);
const char* nameOf(Owner owner);
Owner owners();
Use useOf(Owner owner);
/// Of the latest block.
Serial latest();
/// What is not freed of the blocks after number `after`, up to number `last`.
UseOfAll leftOf(Serial after, Serial last);

/// To be asked before each allocation: whether it is to fail.
bool refuses(Owner owner);
/// Likewise before each call by the owner of a function that allocates where no allocator is watched. Such
/// calls count together with the allocations of COM for the owner.
bool refusesCall(Owner owner);
/// Between these, allocations of COM are made for `importer`.
void beginImportedCall(Owner importer);
void endImportedCall();

void add(Owner owner, void* block, std::size_t size);
/// Whether the block was in the book; then `size` is that with which it was added.
bool remove(void* block, std::size_t& size);

} // namespace book

} // namespace leak_gate
