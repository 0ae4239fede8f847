#pragma once
#include "IException.h"

/// The tree of exceptions below IException. No class adds a field, and every one starts with an empty
/// message.
///
/// Thrown are CExcpDivideZero and CExcpSingularMatrix, by the value types and what computes with them; the rest of
/// the tree gives names to failures of storage, class registry and transactions.
namespace tessarine
{
// clang-format off
class CExcpStdCPP : public IException {};
class CExcpFailToHandleException : public IException {};
class CExcpUnknown : public IException {};
class CExcpGeoMath : public IException {};

class CExcpPstEntityFailure : public IException {};
class CExcpFailToCreatePstEntity : public CExcpPstEntityFailure {};
class CExcpFailToDeletePstEntity : public CExcpPstEntityFailure {};
class CExcpFailToRecoverPstEntity : public CExcpPstEntityFailure {};
class CExcpNullPtrIsNonzero : public CExcpPstEntityFailure {};
class CExcpRecoverUndeletedPstEntity : public CExcpPstEntityFailure {};
class CExcpInvalidPstEntity : public CExcpPstEntityFailure {};
class CExcpNullPstEntity : public CExcpInvalidPstEntity {};
class CExcpDeletedPstEntity : public CExcpInvalidPstEntity {};
class CExcpNotExistPstEntity : public CExcpInvalidPstEntity {};
class CExcpPurgedPstEntity : public CExcpNotExistPstEntity {};

class CExcpDynClassFailure : public IException {};
class CExcpInvalidClassName : public CExcpDynClassFailure {};
class CExcpInvalidClassID : public CExcpDynClassFailure {};
class CExcpFailToRegisterDynClass : public CExcpDynClassFailure {};
class CExcpDynClassCreatorFailure : public CExcpDynClassFailure {};
class CExcpDynClassCreatorIsNull : public CExcpDynClassFailure {};

class CExcpTransactionEngineFailure : public IException {};
class CExcpTransactionDelimiterMismatched : public CExcpTransactionEngineFailure {};
class CExcpNotSupportNestedTransaction : public CExcpTransactionEngineFailure {};
class CExcpOperationNotInAnyTransaction : public CExcpTransactionEngineFailure {};
class CExcpFailToRollbackTransaction : public CExcpTransactionEngineFailure {};
class CExcpFailToRegisterOperation : public CExcpTransactionEngineFailure {};
class CExcpFailToBackupContentInTransaction : public CExcpTransactionEngineFailure {};
class CExcpCurrentTransactionIsInvalid : public CExcpTransactionEngineFailure {};
class CExcpTransactionEngineHasError : public CExcpTransactionEngineFailure {};
class CExcpFailToRecordOperation : public CExcpTransactionEngineFailure {};

class CExcpInvalidID : public IException {};
class CExcpNegativeID : public CExcpInvalidID {};
class CExcpOverflowedID : public CExcpInvalidID {};
class CExcpZeroID : public CExcpInvalidID {};

/// Spelt so.
class CExcpMemoeryFailure : public IException {};
class CExcpOutOfMemory : public CExcpMemoeryFailure {};
class CExcpFailToCastPointer : public CExcpMemoeryFailure {};
class CExcpReferToNULLPointer : public CExcpMemoeryFailure {};
class CExcpOutOfRange : public CExcpMemoeryFailure {};
class CExcpInvalidIndex : public CExcpOutOfRange {};

class CExcpNumericComputingFailure : public IException {};
class CExcpNoSolution : public CExcpNumericComputingFailure {};
class CExcpDivideZero : public CExcpNumericComputingFailure {};
class CExcpMatrixComputingFailure : public CExcpNumericComputingFailure {};
class CExcpSingularMatrix : public CExcpMatrixComputingFailure {};
class CExcpFailToNormalizeVector : public CExcpMatrixComputingFailure {};
class CExcpInvalidDimension : public CExcpMatrixComputingFailure {};
class CExcpDimensionMismatched : public CExcpMatrixComputingFailure {};
class CExcpMatrixIsEmpty : public CExcpMatrixComputingFailure {};
class CExcpCannotPerformOnItself : public CExcpMatrixComputingFailure {};
class CExcpCannotPerformOnSharedBuffer : public CExcpMatrixComputingFailure {};
class CExcpCannotPerformOnNonsquareMatrix : public CExcpMatrixComputingFailure {};
// clang-format on
}
