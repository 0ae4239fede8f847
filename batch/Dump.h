#pragma once
#include "JsonText.h"

namespace tessarine
{
struct BatchDocument;

/// Writes everything in the stores as one JSON object, format "tessarine-dump 1", a record a line.
///
/// The six arrays of elements have one entry for each slot of the element manager's array of that kind, null
/// where the element was deleted. The text is handed on in pieces: a model of any size takes little memory.
///
/// Fails   A material or texture that no list holds is an assertion. What the sink throws comes through.
void WriteDump(const BatchDocument& document, const JsonText::Sink& sink);
}
