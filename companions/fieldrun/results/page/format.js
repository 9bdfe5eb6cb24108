// Numbers as people read them, and tables as other programs do.

const NARROW_SPACE = '\u202f';

/** Up to `digits` significant digits, without zeros at the end and without an exponent. */
export function plain(value, digits = 5) {
  if (value === null || value === undefined || !Number.isFinite(value)) return '';
  if (value === 0) return '0';
  const places = Math.max(0, digits - 1 - Math.floor(Math.log10(Math.abs(value))));
  const text = value.toFixed(Math.min(places, 20));
  return text.includes('.') ? text.replace(/\.?0+$/, '') : text;
}

/** The same for the eye: thousands stand apart, and a dash for what nobody tells. */
export function shown(value, digits = 5) {
  const text = plain(value, digits);
  if (text === '') return '–';
  const [whole, part] = text.replace('-', '−').split('.');
  const grouped = whole.replace(/\B(?=(\d{3})+(?!\d))/g, NARROW_SPACE);
  return part ? `${grouped}.${part}` : grouped;
}

/** "950", "12.5k", "3.2M": for axes and headline numbers. */
export function short(value) {
  const size = Math.abs(value);
  const [divisor, suffix] = size >= 1e9 ? [1e9, 'G'] : size >= 1e6 ? [1e6, 'M'] :
      size >= 1e4 ? [1e3, 'k'] : [1, ''];
  return plain(value / divisor, 4) + suffix;
}

/** "1 well", "5 wells". */
export const counted = (count, noun) => `${shown(count, 9)} ${noun}${count === 1 ? '' : 's'}`;

/** A comma-separated table, with fields in quotes where they need them. */
export function csv(rows) {
  const field = (value) => {
    const text = typeof value === 'number' ? plain(value, 7) : String(value ?? '');
    return /[",\n]/.test(text) ? `"${text.replaceAll('"', '""')}"` : text;
  };
  return rows.map((row) => row.map(field).join(',')).join('\n') + '\n';
}
