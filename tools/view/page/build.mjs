// Bundles the page and writes it as C++: node build.mjs OUT.cpp. What stands before and behind the
// entries becomes two lists of string literals.

import {createHash} from 'node:crypto';
import {readFileSync, writeFileSync} from 'node:fs';
import {dirname, join} from 'node:path';
import {fileURLToPath} from 'node:url';
import {buildSync, transformSync} from 'esbuild';

const folder = dirname(fileURLToPath(import.meta.url));
const read = (name) => readFileSync(join(folder, name), 'utf8');

const script = buildSync({
  entryPoints: [join(folder, 'main.js')],
  bundle: true,
  minify: true,
  write: false,
  format: 'iife',
  target: 'es2020',
  charset: 'ascii',
  legalComments: 'inline',
}).outputFiles[0].text.replaceAll('</script', '<\\/script');
const style = transformSync(read('page.css'), {loader: 'css', minify: true, charset: 'ascii'}).code;

// Only these two elements may run and style: nothing that a file's name could smuggle in.
const hash = (text) => `sha256-${createHash('sha256').update(text).digest('base64')}`;
const put = (page, mark, text) => page.replace(mark, () => text);
let page = read('page.html');
page = put(page, 'SCRIPT_HASH', hash(script));
page = put(page, 'STYLE_HASH', hash(style));
page = put(page, '<style>STYLE', `<style>${style}`);
page = put(page, '<script>SCRIPT', `<script>${script}`);
const [head, tail] = page.split('>ITEMS<');

// Compilers limit the length of a literal.
const piece = 4000;
function literals(text) {
  const lines = [];
  const bytes = Buffer.from(text);
  for (let at = 0; at < bytes.length; at += piece) {
    let line = '';
    for (const byte of bytes.subarray(at, at + piece)) {
      const plain = byte >= 0x20 && byte < 0x7f && byte !== 0x22 && byte !== 0x5c && byte !== 0x3f;
      line += plain ? String.fromCharCode(byte) : `\\${byte.toString(8).padStart(3, '0')}`;
    }
    lines.push(`"${line}",`);
  }
  return lines.join('\n');
}

writeFileSync(
  process.argv[2],
  `// Made by tools/view/page/build.mjs.
#include "tools/view/ViewPage.h"

namespace tools {

const char* const* viewPageHead() {
  static const char* const kPieces[] = {
${literals(`${head}>`)}
nullptr};
  return kPieces;
}

const char* const* viewPageTail() {
  static const char* const kPieces[] = {
${literals(`<${tail}`)}
nullptr};
  return kPieces;
}

}  // namespace tools
`,
);
