; Last instrument of every stem: the room and the dotted echo that the others send to.
instr space
  aDL delayr $BEAT * 1.5
  aTapL deltap $BEAT * 0.75
        delayw gaDelL + gaDelR * 0.3
  aDR delayr $BEAT * 1.5
  aTapR deltap $BEAT * 0.75
        delayw gaDelR * 0.5 + aTapL * 0.55
  aEL tone aTapL, 5200
  aER tone aTapR, 5200
  aEL buthp aEL, 220
  aER buthp aER, 220
  aInL buthp gaRevL + aEL * 0.2, 170
  aInR buthp gaRevR + aER * 0.2, 170
  aRL, aRR reverbsc aInL, aInR, 0.85, 8500
  outs aRL + aEL, aRR + aER
  clear gaRevL, gaRevR, gaDelL, gaDelR
endin
