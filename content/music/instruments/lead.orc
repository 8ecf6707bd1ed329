; The voices that carry the tune. All speak within a few milliseconds.
; p7: Hz of the note before, that the voice glides from; 0 where there is none and it scoops from just below.

opcode glide, k, iiii
  iHz, iFrom, iScoop, iTime xin
  kHz expseg (iFrom == 0 ? iHz * iScoop : iFrom), iTime, iHz, 10, iHz
  xout kHz
endop

; Whistle: sine, breath, shy vibrato.
instr whistle
  kE linsegr 0, 0.012, 1, 0.15, 0.8, 0.1, 0
  kV linseg 0, 0.22, 0, 0.4, 0.007, 1, 0.007
  kL lfo 1, 5.1
  kG glide p4, p7, 0.97, 0.045
  kF = kG * (1 + kV * kL)
  a1 oscili 0.7, kF, giSine
  a2 vco2 0.26, kF, 12
  a3 oscili 0.1, kF * 2, giSine
  aN noise 0.5, 0
  aN butbp aN, p4 * 2, p4 * 0.5
  kN expseg 1, 0.06, 0.15, 5, 0.1
  place (a1 + a2 + a3 + aN * kN * 0.7) * kE * p5 * 0.267, p6, 0.25, 0.25
endin

; Reed: the second voice, hollow below and nasal above.
instr reed
  kE linsegr 0, 0.03, 1, 0.2, 0.9, 0.1, 0
  kV linseg 0, 0.35, 0, 0.5, 0.005, 1, 0.005
  kL lfo 1, 4.7
  kG glide p4, p7, 0.99, 0.025
  kF = kG * (1 + kV * kL)
  a1 vco2 0.5, kF, 10
  a2 vco2 0.2, kF, 4, 0.3
  aF butlp a1 + a2, 900 + p4 * 2.2 + 1200 * p5
  aB butbp aF, 1150, 500
  place (aF * 0.7 + aB * 0.5) * kE * p5 * 0.286, p6, 0.24, 0.15
endin

; Voice: a sung "oo" that opens on long notes.
instr voice
  kE linsegr 0, 0.03, 1, 0.3, 0.92, 0.16, 0
  kV linseg 0, 0.25, 0.001, 0.5, 0.009, 1, 0.009
  kL lfo 1, 5.4
  kJ jspline 0.003, 1, 4
  kG glide p4, p7, 0.965, 0.065
  kF = kG * (1 + kV * kL + kJ)
  a1 vco2 0.5, kF
  a2 vco2 0.3, kF * 1.004
  aN noise 0.02, 0
  kO linseg 0.15, 0.3, 0.5, 1, 0.75, 3, 0.75
  aF vowel a1 + a2 + aN, kO
  aS oscili 0.3, kF, giSine
  place (aF * 1.1 + aS) * kE * p5 * 0.281, p6, 0.3, 0.2
endin

; Lead: saw and pulse, full width in the mix.
instr lead
  kE linsegr 0, 0.006, 1, 0.2, 0.85, 0.1, 0
  kV linseg 0, 0.25, 0, 0.4, 0.006, 1, 0.006
  kL lfo 1, 5.3
  kG glide p4, p7, 0.98, 0.03
  kF = kG * (1 + kV * kL)
  a1 vco2 0.35, kF, 2, 0.42
  a2 vco2 0.3, kF * 1.006
  a3 vco2 0.3, kF * 0.994
  kC expseg 1, 0.35, 0.6, 3, 0.5
  aL moogladder a1 + a2, 1200 + p4 * 2 + 6000 * p5 * kC, 0.15
  aR moogladder a1 + a3, 1200 + p4 * 2 + 6000 * p5 * kC, 0.15
  iAng = (p6 + 1) * 0.7853981634
  wide aL * kE * p5 * 0.748 * cos(iAng), aR * kE * p5 * 0.748 * sin(iAng), 0.2, 0.22
endin

; Brass: low and broad, its brightness follows its force.
instr brass
  kE linsegr 0, 0.02, 1, 0.2, 0.85, 0.15, 0
  k1 jspline 0.003, 1, 4
  kG glide p4, p7, 0.97, 0.05
  a1 vco2 0.35, kG * (1 + k1)
  a2 vco2 0.35, kG * (1.004 - k1)
  a3 vco2 0.2, kG * 0.5
  kC linsegr 0.15, 0.05, 1, 0.4, 0.6, 0.15, 0.1
  aF moogladder a1 + a2 + a3, 300 + 5600 * kC * p5, 0.2
  place tanh(aF * 1.4) * kE * p5 * 0.537, p6, 0.25, 0
endin
