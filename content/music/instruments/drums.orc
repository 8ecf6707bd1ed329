; The kit. Every attack is at once, so that what the picture jumps to is on the beat.

instr kick
  p3 = 0.42
  kF expseg 300, 0.016, 102, 0.07, 54, 0.3, 46
  kE expseg 1, 0.1, 0.5, 0.22, 0.002, 1, 0.001
  aB oscili kE, kF, giSine, 0.25
  aN noise 1, 0
  kC expseg 1, 0.007, 0.001, 1, 0.001
  aC buthp aN * kC, 1500
  place tanh((aB * 1.5 + aC * 0.5) * 1.3) * p5 * 0.72, 0, 0, 0
endin

; The same drum through a wall.
instr softkick
  p3 = 0.4
  kF expseg 140, 0.03, 62, 0.3, 46
  kE expseg 1, 0.1, 0.5, 0.25, 0.002, 1, 0.001
  aB oscili kE, kF, giSine, 0.25
  aN noise 0.25, 0
  kC expseg 1, 0.012, 0.001, 1, 0.001
  place (aB + butlp(aN * kC, 900)) * p5 * 0.6, 0, 0.08, 0
endin

; Heart: two dull thumps, lub and dub.
instr heart
  p3 = 0.5
  kF1 expseg 105, 0.05, 52, 0.2, 40
  kE1 expseg 1, 0.08, 0.4, 0.1, 0.001, 1, 0.001
  a1 oscili kE1, kF1, giSine, 0.25
  a2 delay a1, 0.19
  aN noise 1, 0
  kN expseg 1, 0.014, 0.001, 1, 0.001
  aN butbp aN * kN, 350, 400
  place tanh((a1 + a2 * 0.55 + aN) * 1.4) * p5 * 0.673, 0, 0.06, 0
endin

; p7: room.
instr snare
  iRoom = (p7 == 0 ? 0.1 : p7)
  p3 = 0.4
  kF expseg 340, 0.015, 205, 0.3, 176
  kE expseg 1, 0.06, 0.12, 0.14, 0.001, 1, 0.001
  aB oscili kE, kF, giSine
  aN noise 1, 0
  kN expseg 1, 0.045, 0.45, 0.17, 0.002, 1, 0.001
  aH butbp aN, 3400, 4200
  aX butbp aN, 1400, 900
  place tanh((aB * 0.75 + (aH * 1.0 + aX * 0.6) * kN) * 1.5) * p5 * 0.792, p6, iRoom, 0
endin

instr clap
  iRoom = (p7 == 0 ? 0.2 : p7)
  p3 = 0.4
  aN noise 1, 0
  kE expseg 1, 0.009, 0.12, 0.001, 0.9, 0.009, 0.12, 0.001, 1, 0.012, 0.3, 0.16, 0.001, 1, 0.001
  aL butbp aN * kE, 1250, 1100
  aH butbp aN * kE, 3600, 3000
  aS delay aH, 0.004
  wide (aL + aH * 0.5) * p5 * 1.57, (aL + aS * 0.5) * p5 * 1.57, iRoom, 0
endin

instr rim
  p3 = 0.15
  a1 partial 1720, 0.5, 0.06
  a2 partial 470, 0.5, 0.09
  aN noise 0.5, 0
  kN expseg 1, 0.004, 0.001, 1, 0.001
  place (a1 + a2 + aN * kN) * p5 * 0.711, p6, 0.15, 0.05
endin

; p7: decay in seconds.
instr hat
  iDec = (p7 == 0 ? 0.045 : p7)
  p3 = iDec + 0.03
  aN noise 1, 0
  aM vco2 0.25, 8430, 10
  aQ vco2 0.25, 5230, 10
  aN buthp aN + aM + aQ, 7600
  aN buthp aN, 6000
  kE expseg 1, iDec, 0.002, 1, 0.001
  place aN * kE * p5 * 0.672, p6, 0.03, 0
endin

instr shaker
  p3 = 0.12
  aN noise 1, 0
  aN butbp aN, 6200, 3600
  kE linseg 0, 0.012, 1, 0.03, 0.35, 0.07, 0
  place aN * kE * p5 * 0.555, p6, 0.05, 0
endin

instr ride
  p3 = 0.9
  aN noise 1, 0
  aM vco2 0.2, 4270, 10
  aQ vco2 0.2, 6710, 10
  aN buthp aN * 0.5 + aM + aQ, 6800
  kE expseg 1, 0.03, 0.25, 0.8, 0.002, 1, 0.001
  place aN * kE * p5 * 0.439, p6, 0.06, 0
endin

instr tom
  p3 = 0.5
  kF expseg p4 * 1.9, 0.03, p4 * 1.1, 0.4, p4 * 0.9
  kE expseg 1, 0.12, 0.4, 0.3, 0.001, 1, 0.001
  aB oscili kE, kF, giSine
  aN noise 1, 0
  kN expseg 1, 0.02, 0.05, 0.1, 0.001, 1, 0.001
  place tanh((aB + butbp(aN * kN, 900, 900)) * 1.5) * p5 * 0.5, p6, 0.16, 0
endin

instr crash
  p3 = 3
  aN noise 1, 0
  aM vco2 0.12, 3170, 10
  aQ vco2 0.12, 5390, 10
  aA buthp aN + aM + aQ, 3300
  kE expseg 1, 0.12, 0.4, 2.6, 0.001, 1, 0.0005
  aR noise 1, 0
  aR buthp aR + aM - aQ, 3300
  wide aA * kE * p5 * 0.355, aR * kE * p5 * 0.355, 0.12, 0
endin

; Hit for the cuts: low boom, body and crack. p7: room.
instr hit
  iRoom = (p7 == 0 ? 0.25 : p7)
  p3 = 1.8
  kF expseg 190, 0.035, 62, 1.5, 36
  kE expseg 1, 0.35, 0.45, 1.3, 0.001, 1, 0.001
  aB oscili kE, kF, giSine, 0.25
  aN noise 1, 0
  kN expseg 1, 0.03, 0.3, 0.7, 0.001, 1, 0.001
  aN butlp aN * kN, 4200
  aL = tanh((aB * 1.3 + aN * 0.55) * 1.4) * p5 * 0.46
  aS delay aN, 0.011
  wide aL + aS * 0.1 * p5, aL - aS * 0.1 * p5, iRoom, 0
endin
