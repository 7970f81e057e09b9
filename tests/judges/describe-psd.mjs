// Prints what ag-psd finds in a PSD file, as readers.py describes it:
// {merged, alpha, layers: [{name, in, hidden, opacity, blend, place, pixels}]}, bottom layer first.
import {createHash} from 'node:crypto';
import {readFileSync} from 'node:fs';
import {initializeCanvas, readPsd} from 'ag-psd';

initializeCanvas(
  () => {
    throw new Error('a canvas is needed');
  },
  (width, height) => ({width, height, data: new Uint8ClampedArray(4 * width * height)}),
);

const fingerprint = (image) =>
  image &&
  `${image.width} x ${image.height} ` +
    createHash('sha256').update(new Uint8Array(image.data.buffer)).digest('hex');

function hasAlpha(image) {
  for (let i = 3; i < image.data.length; i += 4) {
    if (image.data[i] !== 255) {
      return true;
    }
  }
  return false;
}

// A group comes after what is in it.
function flatten(layers, group, list) {
  for (const layer of layers) {
    if (layer.children) {
      flatten(layer.children, `${group}${layer.name}/`, list);
    }
    list.push({
      name: layer.name,
      in: group,
      hidden: layer.hidden ?? false,
      opacity: layer.opacity,
      blend: layer.blendMode,
      place: [layer.left, layer.top, layer.right, layer.bottom],
      pixels: fingerprint(layer.imageData) ?? null,
    });
  }
  return list;
}

try {
  const psd = readPsd(readFileSync(process.argv[2]), {
    useImageData: true,
    skipThumbnail: true,
    strict: true,
  });
  console.log(
    JSON.stringify({
      merged: fingerprint(psd.imageData) ?? null,
      alpha: psd.imageData ? hasAlpha(psd.imageData) : false,
      layers: flatten(psd.children ?? [], '', []),
    }),
  );
} catch (error) {
  console.error(String(error));
  process.exit(1);
}
