// What is wrong with an entry, in words.

import {byId, count, element, icon} from './dom.js';

function texts(entry) {
  const found = [];
  if (entry.fault) {
    found.push(['This cannot be shown', entry.fault]);
  }
  if (entry.missing) {
    const title = entry.before
      ? 'The file is not there any more'
      : 'Maya shows something else here';
    found.push([title, entry.missing]);
  }
  if (entry.report?.fault) {
    found.push(['The file is damaged', entry.report.fault]);
  }
  if (entry.goblins?.fault) {
    found.push([
      'The goblin geometry is damaged',
      `${entry.goblins.fault}. What could be read before that is shown. Export the tile again.`,
    ]);
  }
  if (entry.goblins?.dropped) {
    found.push([
      'Some triangles are left out',
      `${count(entry.goblins.dropped, 'triangle')} with coordinates that are no finite numbers.`,
    ]);
  }
  if (entry.pictureFault) {
    found.push(['There is no picture', entry.pictureFault]);
  }
  return found;
}

export function showFaults(entry) {
  byId('faults').replaceChildren(
    ...(entry ? texts(entry) : []).map(([what, why]) =>
      element(
        'div',
        {class: 'fault'},
        icon('fault'),
        element('p', {}, element('strong', {}, what), element('br'), why),
      ),
    ),
  );
}
