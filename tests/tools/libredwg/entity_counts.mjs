// Entity counts of DWG files as LibreDWG reads them: a measuring stick for our own reader, used
// by the tests only.
//
//   node entity_counts.mjs drawing.dwg [more.dwg ...]
//
// Prints one JSON object a line per file: {"file", "error", "counts"}. "error" is LibreDWG's
// error bit set (128 and above: it gave up on the file). "counts" holds every entity of the
// file's object list by LibreDWG's type name: entities of model space, paper space and every
// block, with the BLOCK/ENDBLK pair of each block, attributes (ATTRIB), polyline vertices
// (VERTEX_*) and SEQEND records each counted as entities of their own. Objects (tables,
// dictionaries, ...) are not counted.
import createModule from './node_modules/@mlightcad/libredwg-web/wasm/libredwg-web.js';
import fs from 'node:fs';

const kEntity = 0;  // Dwg_Object_Supertype SUPERTYPE_ENTITY

function countEntities(lib, data) {
  const counts = {};
  const total = lib.dwg_get_num_objects(data);
  for (let i = 0; i < total; i++) {
    const object = lib.dwg_get_object(data, i);
    if (!object || lib.dwg_object_get_supertype(object) !== kEntity) continue;
    const name = lib.dwg_object_get_dxfname(object);
    counts[name] = (counts[name] || 0) + 1;
  }
  return counts;
}

function readOne(lib, path) {
  const scratch = '/drawing.dwg';
  lib.FS.writeFile(scratch, new Uint8Array(fs.readFileSync(path)));
  try {
    const result = lib.dwg_read_file(scratch);
    const counts = result.data ? countEntities(lib, result.data) : {};
    if (result.data) lib.dwg_free(result.data);
    return { file: path, error: result.error, counts };
  } catch (e) {
    return { file: path, error: -1, counts: {}, message: String(e) };
  } finally {
    lib.FS.unlink(scratch);
  }
}

const files = process.argv.slice(2);
if (files.length === 0) {
  console.error('usage: node entity_counts.mjs drawing.dwg [more.dwg ...]');
  process.exit(2);
}
const lib = await createModule({ printErr: () => {} });
for (const path of files) console.log(JSON.stringify(readOne(lib, path)));
