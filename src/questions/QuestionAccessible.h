#pragma once

/// A question is an alert to screen readers.
namespace QuestionAccessible {
/// Has each `PageQuestionBox` told as one; may be called again.
void install();
}
