#include "CExcp.h"
#include <gtest/gtest.h>
#include <type_traits>

namespace tessarine
{
namespace
{
template <class... TClasses>
struct ClassList
{
};

/// All classes below IException.
using Tree = ClassList<
    CExcpStdCPP, CExcpFailToHandleException, CExcpUnknown, CExcpGeoMath, CExcpPstEntityFailure,
    CExcpFailToCreatePstEntity, CExcpFailToDeletePstEntity, CExcpFailToRecoverPstEntity,
    CExcpNullPtrIsNonzero, CExcpRecoverUndeletedPstEntity, CExcpInvalidPstEntity, CExcpNullPstEntity,
    CExcpDeletedPstEntity, CExcpNotExistPstEntity, CExcpPurgedPstEntity, CExcpDynClassFailure,
    CExcpInvalidClassName, CExcpInvalidClassID, CExcpFailToRegisterDynClass, CExcpDynClassCreatorFailure,
    CExcpDynClassCreatorIsNull, CExcpTransactionEngineFailure, CExcpTransactionDelimiterMismatched,
    CExcpNotSupportNestedTransaction, CExcpOperationNotInAnyTransaction, CExcpFailToRollbackTransaction,
    CExcpFailToRegisterOperation, CExcpFailToBackupContentInTransaction, CExcpCurrentTransactionIsInvalid,
    CExcpTransactionEngineHasError, CExcpFailToRecordOperation, CExcpInvalidID, CExcpNegativeID,
    CExcpOverflowedID, CExcpZeroID, CExcpMemoeryFailure, CExcpOutOfMemory, CExcpFailToCastPointer,
    CExcpReferToNULLPointer, CExcpOutOfRange, CExcpInvalidIndex, CExcpNumericComputingFailure,
    CExcpNoSolution, CExcpDivideZero, CExcpMatrixComputingFailure, CExcpSingularMatrix,
    CExcpFailToNormalizeVector, CExcpInvalidDimension, CExcpDimensionMismatched, CExcpMatrixIsEmpty,
    CExcpCannotPerformOnItself, CExcpCannotPerformOnSharedBuffer, CExcpCannotPerformOnNonsquareMatrix>;

/// TUpper is a base of TLower, at whatever distance, and not the same class.
template <class TUpper, class TLower>
constexpr bool kIsAbove = std::is_base_of_v<TUpper, TLower> && !std::is_same_v<TUpper, TLower>;

/// TClass stands directly below TBase: no class of the tree is between.
template <class TBase, class TClass, class... TOthers>
constexpr bool IsDirectlyBelow(ClassList<TOthers...>)
{
    return kIsAbove<TBase, TClass> && !((kIsAbove<TBase, TOthers> && kIsAbove<TOthers, TClass>) || ...);
}
static_assert(!IsDirectlyBelow<IException, CExcpSingularMatrix>(Tree()), "two classes are between");
static_assert(!IsDirectlyBelow<CExcpDivideZero, CExcpNoSolution>(Tree()), "siblings");

/// The classes stand directly below TBase, and all of them have the form of the tree.
template <class TBase, class... TClasses>
constexpr bool Heads()
{
    static_assert((IsDirectlyBelow<TBase, TClasses>(Tree()) && ...));
    static_assert((std::is_convertible_v<TClasses*, IException*> && ...));
    static_assert(((sizeof(TClasses) == sizeof(IException)) && ...), "no class adds a field");
    static_assert((std::is_default_constructible_v<TClasses> && ...));
    static_assert((std::is_copy_constructible_v<TClasses> && ...));
    static_assert((std::has_virtual_destructor_v<TClasses> && ...));
    return true;
}

static_assert(Heads<IException, CExcpStdCPP, CExcpFailToHandleException, CExcpUnknown, CExcpGeoMath,
                    CExcpPstEntityFailure, CExcpDynClassFailure, CExcpTransactionEngineFailure,
                    CExcpInvalidID, CExcpMemoeryFailure, CExcpNumericComputingFailure>());
static_assert(Heads<CExcpPstEntityFailure, CExcpFailToCreatePstEntity, CExcpFailToDeletePstEntity,
                    CExcpFailToRecoverPstEntity, CExcpNullPtrIsNonzero, CExcpRecoverUndeletedPstEntity,
                    CExcpInvalidPstEntity>());
static_assert(
    Heads<CExcpInvalidPstEntity, CExcpNullPstEntity, CExcpDeletedPstEntity, CExcpNotExistPstEntity>());
static_assert(Heads<CExcpNotExistPstEntity, CExcpPurgedPstEntity>());
static_assert(Heads<CExcpDynClassFailure, CExcpInvalidClassName, CExcpInvalidClassID,
                    CExcpFailToRegisterDynClass, CExcpDynClassCreatorFailure, CExcpDynClassCreatorIsNull>());
static_assert(
    Heads<CExcpTransactionEngineFailure, CExcpTransactionDelimiterMismatched,
          CExcpNotSupportNestedTransaction, CExcpOperationNotInAnyTransaction, CExcpFailToRollbackTransaction,
          CExcpFailToRegisterOperation, CExcpFailToBackupContentInTransaction,
          CExcpCurrentTransactionIsInvalid, CExcpTransactionEngineHasError, CExcpFailToRecordOperation>());
static_assert(Heads<CExcpInvalidID, CExcpNegativeID, CExcpOverflowedID, CExcpZeroID>());
static_assert(Heads<CExcpMemoeryFailure, CExcpOutOfMemory, CExcpFailToCastPointer, CExcpReferToNULLPointer,
                    CExcpOutOfRange>());
static_assert(Heads<CExcpOutOfRange, CExcpInvalidIndex>());
static_assert(
    Heads<CExcpNumericComputingFailure, CExcpNoSolution, CExcpDivideZero, CExcpMatrixComputingFailure>());
static_assert(
    Heads<CExcpMatrixComputingFailure, CExcpSingularMatrix, CExcpFailToNormalizeVector, CExcpInvalidDimension,
          CExcpDimensionMismatched, CExcpMatrixIsEmpty, CExcpCannotPerformOnItself,
          CExcpCannotPerformOnSharedBuffer, CExcpCannotPerformOnNonsquareMatrix>());

// Siblings, not parent and child.
static_assert(!std::is_base_of_v<CExcpMatrixComputingFailure, CExcpDivideZero>);
static_assert(!std::is_base_of_v<CExcpOutOfRange, CExcpOutOfMemory>);
static_assert(!std::is_base_of_v<CExcpNotExistPstEntity, CExcpDeletedPstEntity>);
static_assert(!std::is_base_of_v<CExcpInvalidPstEntity, CExcpNullPtrIsNonzero>);

TEST(CExcp, StartsWithAnEmptyMessage)
{
    EXPECT_EQ(CExcpDivideZero().GetMessage(), "");
    EXPECT_EQ(CExcpPurgedPstEntity().GetMessage(), "");
}

TEST(CExcp, PutsTheInnermostContextLast)
{
    CExcpSingularMatrix exception;
    exception.AddContext("inner");
    EXPECT_EQ(exception.GetMessage(), "( inner ) ");
    exception.AddContext("outer");
    EXPECT_EQ(exception.GetMessage(), "( outer ) ( inner ) ");
}

TEST(CExcp, KeepsItsMessageInACopy)
{
    CExcpNoSolution exception;
    exception.AddContext("solver");
    const CExcpNoSolution copy(exception);
    exception.AddContext("later");
    EXPECT_EQ(copy.GetMessage(), "( solver ) ");
}

TEST(CExcp, IsCaughtAsAnyClassAboveIt)
{
    EXPECT_THROW(throw CExcpSingularMatrix(), CExcpMatrixComputingFailure);
    EXPECT_THROW(throw CExcpSingularMatrix(), CExcpNumericComputingFailure);
    EXPECT_THROW(throw CExcpDivideZero(), IException);
}

TEST(CExcp, CarriesItsContextThroughTheBase)
{
    std::string message;
    try
    {
        try
        {
            throw CExcpInvalidIndex();
        }
        catch (IException& exception)
        {
            exception.AddContext("Row 7");
            throw;
        }
    }
    catch (const CExcpOutOfRange& exception)
    {
        message = exception.GetMessage();
    }
    EXPECT_EQ(message, "( Row 7 ) ");
}
}
}
