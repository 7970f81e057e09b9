// Prints what ag-psd finds in a PSD file: {width, height, layers: [{name, hidden}]}, bottom layer first.
import { readFileSync } from 'node:fs';
import { readPsd } from 'ag-psd';

const psd = readPsd(readFileSync(process.argv[2]), {
  skipLayerImageData: true, skipCompositeImageData: true, skipThumbnail: true, strict: true,
});
const layers = (psd.children ?? []).map((layer) => ({ name: layer.name, hidden: layer.hidden ?? false }));
console.log(JSON.stringify({ width: psd.width, height: psd.height, layers }));
