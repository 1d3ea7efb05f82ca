#pragma once

#include "Mesh.h"

#include <iosfwd>
#include <string>

/// Reads positions and faces of a Wavefront OBJ file; everything else is skipped.
/// Polygons become fans. OBJ files are right-handed: Z is mirrored, so that the
/// mesh looks right in the left-handed scene. `mesh` gets positions and indices
/// only, see PrepareMesh(). False with a message in `error`, which names the line,
/// when the file is damaged or empty; `mesh` is of no use then.
bool ReadObj(std::istream& file, Mesh& mesh, std::string& error);
