#pragma once

#include "Mesh.h"

#include <iosfwd>
#include <string>

/// Reads positions and faces of a Wavefront OBJ file; everything else is skipped. Polygons become fans. OBJ files are
/// right-handed: Z is mirrored, so that the mesh looks right in the left-handed scene. Fills positions and indices
/// only; see PrepareMesh(). Returns false, with the line and a message in `error`, if the file is damaged or empty;
/// `mesh` is then undefined.
bool ReadObj(std::istream& file, Mesh& mesh, std::string& error);
