// Prints one line for each binary glTF file: "FILE: N errors, N warnings", then what they are.

import {readFileSync} from 'node:fs';
import validator from 'gltf-validator';

for (const file of process.argv.slice(2)) {
  const {issues} = await validator.validateBytes(new Uint8Array(readFileSync(file)));
  console.log(`${file}: ${issues.numErrors} errors, ${issues.numWarnings} warnings`);
  for (const {severity, code, message, pointer} of issues.messages) {
    if (severity < 2) {
      console.log(`  ${code} ${pointer}: ${message}`);
    }
  }
}
