// Puts a picture together from the layers that are switched on, with the browser's blend modes.

const modes = {
  'mul ': 'multiply',
  scrn: 'screen',
  over: 'overlay',
  dark: 'darken',
  lite: 'lighten',
  lddg: 'lighter',
};

export async function loaded(url) {
  const image = new Image();
  image.src = url;
  await image.decode().catch(() => {});
  return image.naturalWidth ? image : null;
}

export function canvasOf(width, height) {
  return Object.assign(document.createElement('canvas'), {width, height});
}

// Whether each layer is seen, and how much, once the groups around it have had their say.
export function states(entry, shown) {
  const groups = [{visible: true, opacity: 1}];
  const result = [];
  for (let i = entry.layers.length - 1; i >= 0; i--) {
    const around = groups[groups.length - 1];
    const own = {
      visible: around.visible && shown[i],
      opacity: (around.opacity * entry.report.layers[i].opacity) / 255,
    };
    const {section} = entry.layers[i];
    if (section === 'group') {
      groups.push(own);
    } else if (section === 'end' && groups.length > 1) {
      groups.pop();
    }
    result[i] = section === 'layer' ? own : {visible: false, opacity: 0};
  }
  return result;
}

// What is clipped is seen only where the layer below it that is not clipped covers the picture.
function clipped(image, [left, top], base, width, height) {
  const copy = canvasOf(width, height);
  const pen = copy.getContext('2d');
  pen.drawImage(image, left, top);
  pen.globalCompositeOperation = 'destination-in';
  pen.drawImage(base.image, ...base.place);
  return copy;
}

// `shown` says of each layer whether it is switched on.
export async function compose(entry, shown) {
  const {width, height} = entry.picture;
  const canvas = canvasOf(width, height);
  const pen = canvas.getContext('2d');
  const images = await Promise.all(
    entry.layers.map((layer) => (layer.url ? loaded(layer.url) : null)),
  );
  let base = null;
  states(entry, shown).forEach(({visible, opacity}, i) => {
    const layer = entry.layers[i];
    if (layer.section === 'layer' && !layer.clipped) {
      base = visible && images[i] ? {image: images[i], place: layer.place} : null;
    }
    if (!visible || !images[i] || (layer.clipped && !base)) {
      return;
    }
    pen.globalAlpha = opacity;
    pen.globalCompositeOperation = modes[entry.report.layers[i].blend] ?? 'source-over';
    if (layer.clipped) {
      pen.drawImage(clipped(images[i], layer.place, base, width, height), 0, 0);
    } else {
      pen.drawImage(images[i], ...layer.place);
    }
  });
  return canvas;
}

// Where two pictures differ, the more the brighter.
export function difference(first, second, width, height) {
  const canvas = canvasOf(width, height);
  const pen = canvas.getContext('2d');
  pen.fillRect(0, 0, width, height);
  pen.drawImage(first, 0, 0, width, height);
  pen.globalCompositeOperation = 'difference';
  pen.drawImage(second, 0, 0, width, height);
  return canvas;
}
