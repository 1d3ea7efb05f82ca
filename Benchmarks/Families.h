#pragma once

#include "Harness.h"

// The library's side of each family: its tasks, and how the library performs them. Peers are in Peers/ and listed by
// the build file. A new family needs a file like Points.cpp, three lines here, and an entry in Registry.cpp.
namespace bench {

extern const Tasks kPointTasks;
extern const Contender kPoints;
extern const Contender kScalarPoints;

extern const Tasks kArrayTasks;
extern const Contender kArrays;

extern const Tasks kArchiveTasks;
extern const Contender kArchives;
extern const Tasks kConfigurationTasks;
extern const Contender kConfiguration;

extern const Tasks kFileTasks;
extern const Contender kFiles;

extern const Tasks kImagingTasks;
extern const Contender kImaging;
extern const Contender kStoredImaging;

extern const Tasks kFoundationTasks;
extern const Contender kFoundations;

extern const Tasks kThreadTasks;
extern const Contender kThreads;

extern const Tasks kSingleTasks;
extern const Contender kSingles;

/// The tasks of the columns (Inline.cpp).
extern const Tasks kInlineTasks, kInlineQueryTasks;

extern const Tasks kAnimationTasks;
extern const Contender kAnimation;
extern const Contender kAnimationSingly;
extern const Tasks kRotationTasks;
extern const Contender kRotations;
extern const Contender kRotationsSingly;

extern const Tasks kTrigonometryTasks;
extern const Contender kTrigonometry;

extern const Tasks kQueryTasks;
extern const Contender kQueries;
extern const Contender kQueriesSingly;

extern const Tasks kCullingTasks;
extern const Contender kCulling;
extern const Contender kCullingSingly;

extern const Tasks kPickingTasks;
extern const Contender kPicking;
extern const Contender kPickingSingly;

}  // namespace bench
