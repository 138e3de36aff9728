// Values over steps.

import uPlot from 'uplot';
import 'uplot/dist/uPlot.min.css';

const INKS = ['#2f6fb7', '#c9542b', '#2e8b57', '#8a5bb5', '#b8860b', '#c2408c', '#4a9fb0', '#777777'];

const ink = (index) => INKS[index % INKS.length];

/** A chart of histories, and as a table for those who cannot see it. */
export class HistoryChart {
  /** @param {HTMLElement} place */
  constructor(place) {
    this.place = place;
    new ResizeObserver(() => this.plot?.setSize({width: this.width(), height: 260})).observe(place);
  }

  width() {
    return Math.max(200, this.place.clientWidth);
  }

  /**
   * @param {string} label of the abscissa
   * @param {number[]} abscissas ascending
   * @param {{label: string, values: (number|null)[]}[]} series
   */
  show(label, abscissas, series) {
    this.plot?.destroy();
    this.plot = undefined;
    if (!series.length) return;
    const style = getComputedStyle(this.place);
    const axis = {
      stroke: style.color, grid: {stroke: style.getPropertyValue('--line'), width: 1},
      ticks: {stroke: style.getPropertyValue('--line'), width: 1}, font: `12px ${style.fontFamily}`,
      labelFont: `12px ${style.fontFamily}`,
    };
    const options = {
      width: this.width(), height: 260, scales: {x: {time: false}}, legend: {live: false},
      axes: [{...axis, label}, {...axis, size: 80}],
      series: [{label}, ...series.map((of, i) => ({
        label: of.label, stroke: ink(i), width: 2, points: {show: abscissas.length < 60, size: 6},
      }))],
    };
    this.plot = new uPlot(options, [abscissas, ...series.map((of) => of.values)], this.place);
  }
}
