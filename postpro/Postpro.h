#pragma once
// The post-processor of generated text: the batch language and the search and replace grid.
#include "postpro/BatchFolders.h"
#include "postpro/BatchParser.h"
#include "postpro/BatchRunner.h"
#include "postpro/HexValue.h"
#include "postpro/SearchReplaceGrid.h"
