#pragma once
#include <functional>
#include <span>
#include <string>

#include "annotation/Annotations.h"
#include "annotation/InsertedCharacters.h"
#include "ui/Picture.h"

namespace parlowen {

/// Adds the annotations to the picture of a pane: a thin line at each position and its text beside it, in
/// rows from `top` on so that neighbours do not cover each other. Only columns from `left` on are used;
/// `columnOf` tells that of a sample.
void AddAnnotations(Picture& picture, std::span<const Annotation> annotations, int left, int top,
                    const std::function<int(int)>& columnOf);

/// Adds the texts placed in that pane, where they are shown. A row below the picture counts as its last.
void AddCharacters(Picture& picture, const InsertedCharacters& characters, Pane pane, int left,
                   const std::function<int(int)>& columnOf);

}  // namespace parlowen
