#include "src/udf/compound_properties.h"

#include "src/foundation/missing.h"
#include "src/foundation/range_value.h"
#include "src/udf/arguments.h"
#include "src/udf/layout.h"

#include <algorithm>
#include <cmath>

namespace quorvane::udf {

namespace {

constexpr const wchar_t* unknownWeights =
    L"Unable to perform mole-to-mass conversion, one or more unknown molecular weights";

// How the messages of a check begin, with and without a conversion to follow.
struct Context {
    const wchar_t* values;
    const wchar_t* count;
};
constexpr Context converting{L"Unable to perform mole-to-mass conversion, unexpected property values: ",
                             L"Unable to perform mole-to-mass conversion, unexpected number of values"};
constexpr Context passing{L"Unexpected property values: ", L"Unexpected number of values"};

void requireCount(const ArrayVariant& values, const PropertyPackage& package, std::int32_t compound,
                  const Context& context) {
    if (values.count != (compound == selectAll ? package.compoundCount() : 1)) {
        throw CWStrException{context.count};
    }
}

// From per mole to per kilogram. The factor is that of the value's position in the list: a single compound
// asked for by itself gets the factor of the package's first compound. Kept: users' sheets contain these
// numbers.
class MassConversion {
  public:
    MassConversion(const PropertyPackage& package, std::int32_t moleConversion)
        : factors_{moleConversion == 1 ? package.inverseMolecularWeights() : package.molecularWeights()},
          missing_{package.missingMolecularWeight()} {}

    double operator()(double value, std::size_t position) const {
        const double factor = factors_[position];
        if (missing_) {
            if (value == 0.0) {
                return value;
            }
            if (isMissing(factor)) {
                throw CWStrException{unknownWeights};
            }
        }
        return value * factor;
    }

  private:
    const std::vector<double>& factors_;
    bool missing_;
};

// What stands in a cell for a value that is not a number.
com::variant emptyText() { return com::variant{com::unique_bstr{}}; }

void convertConstants(ArrayVariant& values, const PropertyPackage& package, const PropertyInfo& info) {
    const auto elements = values.elements<VARIANT>();
    if (std::ranges::any_of(elements, [](const VARIANT& value) { return value.vt != VT_R8; })) {
        throw CWStrException{L"Unable to perform mole-to-mass conversion, unexpected value data type"};
    }
    const MassConversion convert{package, info.moleConversion};
    std::size_t position = 0;
    for (VARIANT& value : elements) {
        value = (std::isnan(value.dblVal) ? emptyText() : com::variant{convert(value.dblVal, position)})
                    .release();
        ++position;
    }
    values.unlock();
}

// A careless package refers to its own memory, into which Excel would look long after the call.
void resolveReferences(ArrayVariant& values) {
    for (VARIANT& element : values.elements<VARIANT>()) {
        if ((element.vt & VT_BYREF) != 0) {
            const VARIANT target = withoutReference(element);
            auto copy = (target.vt & VT_BYREF) == 0 ? com::copyIfPossible(target) : std::nullopt;
            element = copy ? copy->release() : VARIANT{};
        }
    }
    values.unlock();
}

} // namespace

void compoundConstant(Session& session, const CompoundPropertyArguments& arguments, VARIANT& result) {
    requireText(arguments.propertyName, L"Empty string is not valid for constant name");
    const bool isMass = readBasis(arguments.basis);
    const std::shared_ptr<PropertyPackage> package = readPackage(session, arguments.packageName);
    const std::int32_t compound = readCompound(*package, arguments.compound);
    ArrayVariant values = package->compoundConstant(arguments.propertyName, compound);
    const PropertyInfo* const info = isMass ? &lookupProperty(arguments.propertyName) : nullptr;
    const bool converts = info != nullptr && info->moleConversion != 0;
    const Context& context = converts ? converting : passing;
    requireVector(values, VT_VARIANT, context.values);
    requireCount(values, *package, compound, context);
    if (converts) {
        convertConstants(values, *package, *info);
    } else {
        resolveReferences(values);
    }
    if (readOrientation(arguments.orientation, false) == Orientation_Vertical) {
        toColumn(values);
    }
    values.handOver(&result);
}

void temperatureDependentProperty(Session& session, const CompoundPropertyArguments& arguments, double T,
                                  VARIANT& result) {
    requireText(arguments.propertyName, L"Empty string is not valid for property name");
    const bool isMass = readBasis(arguments.basis);
    const std::shared_ptr<PropertyPackage> package = readPackage(session, arguments.packageName);
    const std::int32_t compound = readCompound(*package, arguments.compound);
    ArrayVariant given = package->temperatureDependentProperty(arguments.propertyName, T, compound);
    const PropertyInfo* const info = isMass ? &lookupProperty(arguments.propertyName) : nullptr;
    requireVector(given, VT_R8, passing.values);
    requireCount(given, *package, compound, passing);

    ArrayVariant values;
    values.createVector(given.count, VT_VARIANT);
    std::size_t position = 0;
    for (const double value : given.elements<double>()) {
        const bool converts = info != nullptr && info->moleConversion != 0 && !std::isnan(value);
        const double shown =
            converts ? MassConversion{*package, info->moleConversion}(value, position) : value;
        values.elements<VARIANT>()[position] =
            (std::isnan(shown) ? emptyText() : com::variant{shown}).release();
        ++position;
    }
    values.handOver(&result);
}

} // namespace quorvane::udf
