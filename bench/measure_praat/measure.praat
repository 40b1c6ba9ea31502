# The columns of parlowen-measure as far as Praat has them, from a sound and the first tier of its TextGrid:
#   praat --run measure.praat SOUND.wav SOUND.TextGrid TABLE.csv
# Settings as near to ours as Praat allows: pitch 64-500 Hz, frames of 10 ms, five formants up to 5000 Hz.
form Measure
  sentence sound_file
  sentence grid_file
  sentence table_file
endform
points = 11
sound = Read from file: sound_file$
channels = Get number of channels
if channels = 2
  sound = Extract one channel: 1
endif
rate = Get sampling frequency
grid = Read from file: grid_file$
selectObject: sound
pitch = To Pitch: 0.01, 64, 500
selectObject: sound
intensity = To Intensity: 64, 0.01, "no"
selectObject: sound
formant = To Formant (burg): 0.01, 5, min (5000, rate / 2), 0.025, 50
selectObject: sound
harmonicity = To Harmonicity (cc): 0.01, 64, 0.1, 1.0
selectObject: sound, pitch
pulses = To PointProcess (cc)

header$ = "label,start,end,duration,level_mean,voiced,f0_mean,f0_sd,f0_min,f0_max,f0_median"
for p to points
  header$ = header$ + ",f0_" + (if p < 10 then "0" else "" fi) + string$ (p)
endfor
writeFileLine: table_file$, header$ + ",f1,f2,f3,b1,b2,b3,jitter,shimmer,hnr,cpp,h1_h2"

selectObject: grid
intervals = Get number of intervals: 1
for i to intervals
  selectObject: grid
  label$ = Get label of interval: 1, i
  if label$ <> ""
    t1 = Get start time of interval: 1, i
    t2 = Get end time of interval: 1, i
    @row
  endif
endfor

procedure row
  row$ = label$ + "," + string$ (t1) + "," + string$ (t2) + "," + string$ (t2 - t1)
  selectObject: intensity
  x = Get mean: t1, t2, "dB"
  @add: x
  selectObject: pitch
  frames = 0
  voiced = 0
  first = undefined
  last = undefined
  x = Get frame number from time: t1
  begin = max (1, ceiling (x))
  x = Get frame number from time: t2
  count = Get number of frames
  upto = min (count, floor (x))
  for f from begin to upto
    frames += 1
    hertz = Get value in frame: f, "Hertz"
    if hertz <> undefined
      voiced += 1
      last = Get time from frame number: f
      if first = undefined
        first = last
      endif
    endif
  endfor
  @add: voiced / frames
  x = Get mean: t1, t2, "Hertz"
  @add: x
  x = Get standard deviation: t1, t2, "Hertz"
  @add: x
  x = Get minimum: t1, t2, "Hertz", "parabolic"
  @add: x
  x = Get maximum: t1, t2, "Hertz", "parabolic"
  @add: x
  x = Get quantile: t1, t2, 0.5, "Hertz"
  @add: x
  for p to points
    x = undefined
    if first <> undefined
      x = Get value at time: first + (last - first) * (p - 1) / (points - 1), "Hertz", "linear"
    endif
    @add: x
  endfor
  # Medians over the voiced frames of the middle third.
  third = (t2 - t1) / 3
  selectObject: formant
  x = Get frame number from time: t1 + third
  begin = max (1, ceiling (x))
  x = Get frame number from time: t2 - third
  count = Get number of frames
  upto = min (count, floor (x))
  for n to 6
    found [n] = 0
  endfor
  for f from begin to upto
    selectObject: formant
    time = Get time from frame number: f
    selectObject: pitch
    hertz = Get value at time: time, "Hertz", "linear"
    if hertz <> undefined
      selectObject: formant
      for n to 3
        value = Get value at time: n, time, "hertz", "linear"
        width = Get bandwidth at time: n, time, "hertz", "linear"
        if value <> undefined
          found [n] += 1
          v [n, found [n]] = value
          found [n + 3] += 1
          v [n + 3, found [n + 3]] = width
        endif
      endfor
    endif
  endfor
  for n to 6
    median = undefined
    if found [n] > 0
      values# = zero# (found [n])
      for k to found [n]
        values# [k] = v [n, k]
      endfor
      values# = sort# (values#)
      median = (values# [floor ((found [n] + 1) / 2)] + values# [floor (found [n] / 2) + 1]) / 2
    endif
    @add: median
  endfor
  selectObject: pulses
  x = Get jitter (local): t1, t2, 0.0001, 0.02, 1.3
  @add: 100 * x
  selectObject: sound, pulses
  x = Get shimmer (local): t1, t2, 0.0001, 0.02, 1.3, 1.6
  @add: 100 * x
  selectObject: harmonicity
  x = Get mean: t1, t2
  @add: x
  # Prominence without smoothing, of the mean of the frames; harmonics of the frame in the middle.
  selectObject: sound
  part = Extract part: t1, t2, "rectangular", 1, "yes"
  x = undefined
  if t2 - t1 > 0.1
    cepstrogram = To PowerCepstrogram: 64, 0.01, 5000, 50
    x = Get CPPS: "no", 0.001, 0.00005, 64, 500, 0.05, "parabolic", 0.001, 0.05, "Straight", "Least squares"
    Remove
  endif
  removeObject: part
  @add: x
  selectObject: pitch
  middle = (t1 + t2) / 2
  hertz = Get value at time: middle, "Hertz", "linear"
  x = undefined
  if hertz <> undefined
    selectObject: sound
    part = Extract part: middle - 0.0256, middle + 0.0256, "Hamming", 1, "no"
    spectrum = To Spectrum: "yes"
    ltas = To Ltas (1-to-1)
    one = Get maximum: 0.9 * hertz, 1.1 * hertz, "cubic"
    two = Get maximum: 1.8 * hertz, 2.2 * hertz, "cubic"
    x = one - two
    removeObject: part, spectrum, ltas
  endif
  @add: x
  appendFileLine: table_file$, row$
endproc

procedure add: .value
  if .value = undefined
    row$ = row$ + ","
  else
    row$ = row$ + "," + fixed$ (.value, 4)
  endif
endproc
